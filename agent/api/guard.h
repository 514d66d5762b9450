// The border between the implementation and the C API, which no exception may cross. Any thread.
#pragma once

#include <new>

#include "slp.h"

namespace slp::client {

/// What `call` returns, or the error that stands for what it has thrown.
template <typename Call>
SLPError Guarded(Call call) noexcept {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return SLP_MEMORY_ALLOC_FAILED;
  } catch (...) {
    return SLP_INTERNAL_SYSTEM_ERROR;
  }
}

}  // namespace slp::client
