#include "agent/net/inheritance.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace slp {

bool IsInherited(NativeSocket socket) {
  const int flags = ::fcntl(socket, F_GETFD);
  EXPECT_GE(flags, 0) << "no descriptor";
  return (flags & FD_CLOEXEC) == 0;
}

}  // namespace slp
