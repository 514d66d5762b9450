// The way from the daemon's logic to the network. Called by the thread that drives the logic, from inside its
// calls: an implementation must not call back.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

/// One agent, and the own address that it was heard at; empty: any.
struct DirectoryPeer {
  std::string address;
  std::string local_address;
  bool operator==(const DirectoryPeer&) const = default;
};

/// A whole exchange by TCP takes no longer: afterwards no reply comes any more.
inline constexpr Seconds kLongestStream{15};

class DirectoryWire {
 public:
  virtual ~DirectoryWire() = default;

  /// By each interface to the group; `message` makes what leaves by networks, or by the loopback network.
  virtual void SendToAll(const std::function<Message(bool loopback)>& message) = 0;

  /// One datagram. What is lost is sent again by the caller.
  virtual void Send(const DirectoryPeer& peer, const Message& message) = 0;

  /// One message by TCP. The reply comes in as every other message does, within kLongestStream.
  virtual void SendByStream(const DirectoryPeer& peer, const Message& message) = 0;

  /// Something that an administrator may want to know; `problem`: should look at.
  virtual void Tell(bool problem, const std::string& text) = 0;
};

}  // namespace slp
