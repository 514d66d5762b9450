// What every function of the C API does with its handle before its own work. Any thread.
#pragma once

#include "api/guard.h"
#include "api/handle_table.h"
#include "api/request_context.h"

namespace slp::client {

/// The request's surroundings: real time and randomness, the process's properties as they are now, the
/// handle's own settings.
RequestContext MakeContext(const HandleState& handle);

/// Holds the handle while `call`, which gets its state, runs. SLP_PARAMETER_BAD for one that isn't open,
/// SLP_HANDLE_IN_USE for one that serves another call.
template <typename Call>
SLPError WithHandle(SLPHandle handle, Call call) noexcept {
  return Guarded([&] {
    const HandleTable::Use use = HandleTable::Instance().Take(handle);
    return use.error() == SLP_OK ? call(use.state()) : use.error();
  });
}

/// Calls back, unless the handle has been closed; whether more may be delivered (RFC 2614 section 4.4.2).
template <typename Callback>
bool DeliverWhileOpen(SLPHandle handle, Callback callback) {
  HandleTable& handles = HandleTable::Instance();
  return handles.IsOpen(handle) && callback() && handles.IsOpen(handle);
}

inline bool IsEmpty(const char* text) {
  return text == nullptr || *text == '\0';
}

/// Null counts as the empty text.
inline const char* OrEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

}  // namespace slp::client
