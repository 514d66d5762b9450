// Initialisation, re-initialisation and shutdown of the core. Any thread may call the operations that take
// the lock.
#include <mutex>
#include <new>
#include <shared_mutex>
#include <utility>

#include "slp/core_state.h"
#include "slp/slp_impl.h"

namespace kelsd {

CKelSLPImpl::~CKelSLPImpl() = default;

CKelSLPImpl::State& CKelSLPImpl::GetState() {
  static State& state = *new State;
  return state;
}

platform::ReaderWriterLock& CKelSLPImpl::CoreLock() {
  return GetState().lock;
}

std::mutex& CKelSLPImpl::HandleLock() {
  return GetState().handle_lock;
}

const CKelSLPServiceConfig& CKelSLPImpl::PropertySnapshotUnlocked() {
  return GetState().snapshot;
}

const std::vector<SResult>& CKelSLPImpl::SnapshotErrorsUnlocked() {
  return GetState().snapshot_errors;
}

SResult CKelSLPImpl::Initialize() {
  return InvokeNamed("kelsd::CKelSLPImpl::Initialize", [] {
    const std::unique_lock lock(CoreLock());
    return InitializeInternal();
  });
}

bool CKelSLPImpl::IsInitialized() {
  bool initialized = false;
  // A core for which there is no memory is not initialised.
  InvokeNoThrow([&] {
    const std::shared_lock lock(CoreLock());
    initialized = IsInitializedUnlocked();
    return SResult(SResult::ERR_SUCCESS);
  });
  return initialized;
}

SResult CKelSLPImpl::ReInitialize(bool clearClientConfig) {
  return InvokeNamed("kelsd::CKelSLPImpl::ReInitialize", [&] {
    const std::unique_lock lock(CoreLock());
    return ReInitializeInternal(clearClientConfig);
  });
}

void CKelSLPImpl::Shutdown() {
  InvokeNoThrow([] {
    const std::unique_lock lock(CoreLock());
    CloseResidentHandleUnlocked();
    GetState().client_config.Clear();
    return SResult(SResult::ERR_SUCCESS);
  });
}

bool CKelSLPImpl::IsInitializedUnlocked() {
  return GetState().resident_handle != nullptr;
}

void CKelSLPImpl::CloseResidentHandleUnlocked() {
  // The core counts as not initialised before the handle is closed.
  const std::unique_ptr<SLPHandleBox> taken_out = std::move(GetState().resident_handle);
}

// 1. Nothing is read or applied again while the resident handle is there.
// 2. A first handle loads the properties, as the only one that is open.
// 3. The snapshot is taken while that handle is open; a property that cannot be read doesn't stop anything.
// 4. The first handle is closed.
// 5. A second handle is opened
// 6. and becomes the resident one.
// 7. The cached client configuration is applied; failures are ignored.
// 8. The locale is read once, its value discarded.
SResult CKelSLPImpl::InitializeInternal() {
  if (IsInitializedUnlocked()) {
    return {SResult::ERR_SUCCESS};
  }
  State& state = GetState();
  const auto failed = [](const SResult& result) {
    CloseResidentHandleUnlocked();
    return result.PrependErrorDebug("kelsd::CKelSLPImpl::InitializeInternal", " ");
  };
  {
    const std::lock_guard no_other_handle(HandleLock());
    SLPHandleBox first;
    const SResult opened = OpenSLPHandle(first.handle, false);
    if (opened.IsNotOk()) {
      return failed(opened);
    }
    CKelSLPServiceConfig snapshot;
    std::vector<SResult> errors;
    GetSLPServiceConfigInternal(snapshot, errors);
    state.snapshot = std::move(snapshot);
    state.snapshot_errors = std::move(errors);
  }
  auto resident = std::make_unique<SLPHandleBox>();
  const SResult opened = OpenSLPHandle(resident->handle, false);
  if (opened.IsNotOk()) {
    return failed(opened);
  }
  state.resident_handle = std::move(resident);
  ApplyClientConfigInternal(state.client_config);
  // Neither this nor applying the configuration turns a core with a resident handle into a failure.
  InvokeNoThrow([] {
    SLPGetProperty(CKelSLPConfig::ToStringKey(CKelSLPConfig::PROP_LOCALE).c_str());
    return SResult(SResult::ERR_SUCCESS);
  });
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::ReInitializeInternal(bool clearClientConfig) {
  CloseResidentHandleUnlocked();
  if (clearClientConfig) {
    GetState().client_config.Clear();
  }
  const SResult result = InitializeInternal();
  return result.IsOk() ? result : result.PrependErrorDebug("kelsd::CKelSLPImpl::ReInitializeInternal", " ");
}

SResult CKelSLPImpl::InvokeNoThrow(const std::function<SResult()>& body) {
  try {
    return body();
  } catch (const std::bad_alloc& exception) {
    return {SResult::ERR_OUT_OF_MEMORY, exception.what()};
  } catch (const std::exception& exception) {
    return {SResult::ERR_BASIC_API, exception.what()};
  }
}

}  // namespace kelsd
