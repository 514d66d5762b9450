// A scripted SLP agent on real loopback sockets: hears datagrams, the multicast group and TCP connections on
// one port and answers each request with what its script says, be it late, twice, from elsewhere, cut short
// or no SLP at all. It runs on a thread of its own; the script is called there, everything else may be called
// from any thread.
#pragma once

#include <asio/ip/address_v4.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/error.h"
#include "wire/messages.h"

namespace slp::support {

struct PeerRequest {
  enum class Transport { kUnicast, kGroup, kStream };

  Transport transport = Transport::kUnicast;
  Bytes bytes = {};
  Result<Message> message = Error::kParseError;  ///< the bytes decoded
  std::chrono::steady_clock::time_point arrival = {};
};

/// One answer; bytes of any kind, also none.
struct PeerReply {
  Bytes bytes = {};
  std::chrono::milliseconds delay{0};
  std::function<bool()> when = {};           ///< not before it says so; it is asked again and again
  bool from_elsewhere = false;               ///< datagrams: sent from another port
  std::size_t chunk = 0;                     ///< streams: so many bytes at a time; 0: all at once
  std::chrono::milliseconds chunk_pause{0};  ///< between two of them
  bool close = false;                        ///< streams: the connection ends behind the bytes
  bool endless = false;                      ///< streams: the bytes are written again and again
};

struct PeerOptions {
  std::string address = "127.0.0.1";
  std::uint16_t port = 0;  ///< 0: a free one
  bool datagrams = true;
  bool group = true;  ///< joins 239.255.255.253 on the interface of `address`, which is no IPv6 address then
  bool streams = true;
};

class SlpPeer {
 public:
  using Script = std::function<std::vector<PeerReply>(const PeerRequest&)>;

  /// Listens when the constructor returns; std::runtime_error when the sockets can't be had.
  explicit SlpPeer(Script script, const PeerOptions& options = {});
  ~SlpPeer();
  SlpPeer(const SlpPeer&) = delete;
  SlpPeer& operator=(const SlpPeer&) = delete;

  std::uint16_t port() const;

  /// Everything that has arrived so far, in order.
  std::vector<PeerRequest> requests() const;

 private:
  class Loop;
  std::unique_ptr<Loop> loop_;
};

/// `body` as the reply to `request`: same XID, same language.
Message ReplyTo(const PeerRequest& request, Body body);

/// The same, encoded.
Bytes EncodedReplyTo(const PeerRequest& request, Body body);

/// A service reply with these URLs, each with a lifetime of 60 seconds.
SrvRply UrlReply(const std::vector<std::string>& urls);

/// The previous responders that a search carries, "" for other messages.
std::string PreviousResponders(const PeerRequest& request);

}  // namespace slp::support
