// The part that every platform shares.
#include "net/native_socket.h"

namespace slp {

bool WaitUntilReady(NativeSocket socket, AwaitedSocket::For operation, std::chrono::milliseconds limit) {
  AwaitedSocket awaited{.socket = socket, .operation = operation};
  WaitUntilReady(std::span(&awaited, 1), limit);
  return awaited.ready;
}

}  // namespace slp
