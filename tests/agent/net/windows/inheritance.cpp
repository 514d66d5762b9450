#include "agent/net/inheritance.h"

#include <gtest/gtest.h>
#include <winsock2.h>

namespace slp {

// A socket is a handle.
bool IsInherited(NativeSocket socket) {
  DWORD flags = 0;
  EXPECT_NE(::GetHandleInformation(reinterpret_cast<HANDLE>(socket), &flags), 0) << ::GetLastError();
  return (flags & HANDLE_FLAG_INHERIT) != 0;
}

}  // namespace slp
