// The state of the core, one a process. Guarded by its `lock`.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "slp/slp_handle_box.h"
#include "slp/slp_impl.h"

namespace kelsd {

struct CKelSLPImpl::State {
  platform::ReaderWriterLock lock;
  std::mutex handle_lock;
  /// Marks the core as initialised; never used for requests.
  std::unique_ptr<SLPHandleBox> resident_handle;
  CKelSLPClientConfig client_config;
  CKelSLPServiceConfig snapshot;
  std::vector<SResult> snapshot_errors;
};

}  // namespace kelsd
