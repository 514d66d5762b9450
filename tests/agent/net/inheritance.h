// What programs that this process starts would get of its sockets.
#pragma once

#include "net/native_socket.h"

namespace slp {

bool IsInherited(NativeSocket socket);

}  // namespace slp
