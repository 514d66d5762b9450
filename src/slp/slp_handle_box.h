// Owner of one SLP handle. Used by one thread at a time.
#pragma once

#include <slp.h>

namespace kelsd {

/// Closes the handle that it holds, if any, when it goes.
struct SLPHandleBox {
  SLPHandleBox() = default;
  ~SLPHandleBox() {
    if (handle != nullptr) {
      SLPClose(handle);
    }
  }
  SLPHandleBox(const SLPHandleBox&) = delete;
  SLPHandleBox& operator=(const SLPHandleBox&) = delete;

  SLPHandle handle = nullptr;
};

}  // namespace kelsd
