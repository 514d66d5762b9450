// Reading and changing the daemon's settings.
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <variant>

#include "foundation/text.h"
#include "service/conf_access.h"
#include "service/config_file_values.h"
#include "service/service_impl.h"
#include "slp/configuration_properties.h"

namespace kelsd {

namespace {

constexpr int kOpenTimeoutSeconds = 2;

/// The reader of each kind of value.
SResult ReadFrom(const CSLPConfAccess& store, CKelSLPConfig::EProperty property, int& value) {
  return ReadNumericProperty(value, property, store);
}
SResult ReadFrom(const CSLPConfAccess& store, CKelSLPConfig::EProperty property, bool& value) {
  return ReadBoolProperty(value, property, store);
}
SResult ReadFrom(const CSLPConfAccess& store, CKelSLPConfig::EProperty property, std::string& value) {
  return ReadStringProperty(value, property, store);
}
SResult ReadFrom(const CSLPConfAccess& store, CKelSLPConfig::EProperty property,
                 std::vector<std::string>& value) {
  return ReadStringListProperty(value, property, store);
}
SResult ReadFrom(const CSLPConfAccess& store, CKelSLPConfig::EProperty property, std::vector<int>& value) {
  return ReadTimeoutList(value, property, store);
}

/// Opens `store`, which other writers wait for.
SResult OpenStore(CSLPConfAccess& store, const std::string& file_name) {
  const SResult::EError error =
      ConvertConfigFileStatus(store.Open(file_name, /*lock=*/true, kOpenTimeoutSeconds));
  return error == SResult::ERR_SUCCESS ? SResult(error) : SResult(error, file_name);
}

/// Writes `store`; `writer` is named in a failure.
SResult UpdateStore(CSLPConfAccess& store, const std::string& file_name, const std::string& writer) {
  const SResult::EError error = ConvertConfigFileStatus(store.Update());
  return error == SResult::ERR_SUCCESS ? SResult(error)
                                       : SResult(error, file_name, writer + " CSLPConfAccess::Update");
}

}  // namespace

// 1. and 2. The core must be initialised.
// 3. It must use the configuration file; the lock is left while it is initialised again.
// 4. Failures end here.
// 5. The snapshot is what the last initialisation read from the file.
SResult CKelSLPServiceImpl::GetSLPServiceConfig(CKelSLPServiceConfig& config, std::vector<SResult>& errors) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::GetSLPServiceConfig";
  const auto body = [&]() -> SResult {
    std::shared_lock lock(CoreLock());
    if (!IsInitializedUnlocked()) {
      return {SResult::ERR_NOT_INITIALIZED, "", kName};
    }
    const SResult validated = ValidateOrReInitialize([&] {
      lock.unlock();
      SResult initialized = ReInitialize(false);
      lock.lock();
      return initialized;
    });
    if (validated.IsNotOk()) {
      return validated.PrependErrorDebug(kName, " ");
    }
    CKelSLPServiceConfig snapshot = PropertySnapshotUnlocked();
    std::vector<SResult> snapshot_errors = SnapshotErrorsUnlocked();
    config = std::move(snapshot);
    errors = std::move(snapshot_errors);
    return {SResult::ERR_SUCCESS};
  };
  // By reference: a function object that copies so many captures needs memory before anything guards it.
  return InvokeNoThrow(std::cref(body));
}

// 1. Open the store on the file.
// 2. Every setting begins with what stands for a key that the file doesn't have.
// 3. Read them in the order of the table.
// 4. Make the record, which may refuse some.
SResult CKelSLPServiceImpl::GetSLPServiceConfigFromFileInternal(CKelSLPServiceConfig& config,
                                                                std::vector<SResult>& errors) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::GetSLPServiceConfigFromFileInternal";
  return InvokeNamed(kName, [&] {
    std::string file_name;
    if (SResult result = GetSLPEnvConfigFileName(file_name); result.IsNotOk()) {
      return result;
    }
    CSLPConfAccess store(m_platform.clock);
    if (SResult result = OpenStore(store, file_name); result.IsNotOk()) {
      return result;
    }
    ServicePropertyValues values;
    std::vector<SResult> problems;
    for (const ConfigurationProperty<ServicePropertyValues>& row : ServiceProperties()) {
      // The version is the library's, not the file's.
      if (row.property == CKelSLPConfig::PROP_OPENSLPVERSION) {
        continue;
      }
      const SResult read =
          std::visit([&](auto member) { return ReadFrom(store, row.property, values.*member); }, row.member);
      if (read.IsNotOk()) {
        problems.push_back(read.PrependErrorDebug(kName, " "));
      }
    }
    config = MakeServiceConfig(values, problems);
    errors = std::move(problems);
    return SResult(SResult::ERR_SUCCESS);
  });
}

// 1. The core is initialised if it wasn't, so that there is an old configuration to compare with.
// 2. The resident handle is closed, the file is written,
// 3. and the core is initialised again, whatever became of the file.
// 4. The daemon takes over what has effectively changed by being restarted; the core lock has been left by
//    then.
SResult CKelSLPServiceImpl::SetSLPServiceConfig(const CKelSLPServiceConfig& config) {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::SetSLPServiceConfig", [&] {
    const std::lock_guard hold(m_serviceLock);
    bool changed = false;
    {
      const std::unique_lock core_lock(CoreLock());
      if (SResult result = InitializeInternal(); result.IsNotOk()) {
        return result;
      }
      const CKelSLPServiceConfig old_config = PropertySnapshotUnlocked();
      CloseResidentHandleUnlocked();
      SResult written = InvokeNoThrow([&] { return SetSLPServiceConfigInternal(config); });
      SResult initialized = InitializeInternal();
      if (written.IsNotOk()) {
        return written;
      }
      if (initialized.IsNotOk()) {
        return initialized;
      }
      changed = !old_config.EditableEqualTo(PropertySnapshotUnlocked());
    }
    return changed ? RestartSLPD() : SResult(SResult::ERR_SUCCESS);
  });
}

SResult CKelSLPServiceImpl::SetSLPServiceConfigInternal(const CKelSLPServiceConfig& config) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::SetSLPServiceConfigInternal";
  return InvokeNamed(kName, [&] {
    std::string file_name;
    if (SResult result = GetSLPEnvConfigFileName(file_name); result.IsNotOk()) {
      return result;
    }
    if (SResult result = CreateMissingConfigFile(file_name); result.IsNotOk()) {
      return result;
    }
    CSLPConfAccess store(m_platform.clock);
    if (SResult result = OpenStore(store, file_name); result.IsNotOk()) {
      return result;
    }
    SetServiceConfigValues(store, config);
    return UpdateStore(store, file_name, kName);
  });
}

SResult CKelSLPServiceImpl::SetLocalScopes(const std::vector<std::string>& scopes) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::SetLocalScopes";
  return InvokeNamed(kName, [&] {
    CKelSLPServiceConfig config;
    config.SetUseScopes(scopes);
    std::string file_name;
    if (SResult result = GetSLPEnvConfigFileName(file_name); result.IsNotOk()) {
      return result;
    }
    CSLPConfAccess store(m_platform.clock);
    if (SResult result = OpenStore(store, file_name); result.IsNotOk()) {
      return result;
    }
    store.SetValue(CKelSLPConfig::ToStringKey(CKelSLPConfig::PROP_USESCOPES), Join(config.GetUseScopes()));
    return UpdateStore(store, file_name, kName);
  });
}

}  // namespace kelsd
