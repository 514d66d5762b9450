// What the daemon sends without having been asked, and hears of it: its advertisements as a directory agent,
// its search for other ones and the registrations with them. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "properties/properties.h"
#include "slpd/agent_settings.h"
#include "slpd/directory/advertiser.h"
#include "slpd/directory/directory_client.h"
#include "slpd/directory/directory_wire.h"
#include "slpd/registry/registry.h"
#include "slpd/seconds.h"
#include "slpd/server/directory_names.h"
#include "slpd/server/listeners.h"
#include "slpd/server/log.h"
#include "slpd/server/stream_request.h"

namespace slp {

class DirectoryTraffic : private DirectoryWire {
 public:
  /// A reply that came by TCP, from this address.
  using OnReply = std::function<void(std::span<const std::uint8_t> message, const Sender& sender)>;

  /// Everything that is handed in outlives it. `on_names` is called from the loop when a configured name
  /// stands for other addresses than before: time for UseNames.
  DirectoryTraffic(asio::io_context& io, Listeners& listeners, const Registry& registry, Log& log,
                   DirectoryClient::Random random, OnReply on_reply, std::function<void()> on_names);
  DirectoryTraffic(const DirectoryTraffic&) = delete;
  DirectoryTraffic& operator=(const DirectoryTraffic&) = delete;
  ~DirectoryTraffic() override;

  /// The settings from now on, with own addresses and boot timestamp in them; what others know of this agent
  /// is told anew.
  void Apply(const AgentSettings& settings, const Properties& properties, Instant now);

  /// What the configured names stand for now counts as configured.
  void UseNames(Instant now);

  void OnRegistration(RegistrationEvent event, const RegistrationView& registration) {
    client_.OnRegistration(event, registration);
  }

  /// Whether a message that begins with `message` is one that TakeMessage understands.
  static bool Wants(std::span<const std::uint8_t> message);

  /// An advertisement or acknowledgment of another agent, `size` bytes long.
  void TakeMessage(const Message& message, std::size_t size, const RequestOrigin& origin, Instant now);

  /// Sends what is due.
  void Tick(Instant now);

  /// When Tick has something to do; none: never.
  std::optional<Instant> NextDue(Instant now) const;

  /// The daemon is about to end: has the own services deregistered.
  void Leave(Instant now) { client_.Leave(now); }

  /// Whether they are, after Leave.
  bool left() const { return client_.left(); }

  /// The daemon ends: a directory agent says so.
  void SayFarewell();

  /// The URLs of the directory agents that a program is told to ask. Whether they are still there is found
  /// out for the next one by what the next Tick sends.
  std::vector<std::string> KnownAgents(const std::vector<std::string>& scopes, Instant now) {
    client_.CheckSoon(now);
    return client_.Serving(scopes);
  }

 private:
  void SendToAll(const std::function<Message(bool loopback)>& message) override;
  void Send(const DirectoryPeer& peer, const Message& message) override;
  void SendByStream(const DirectoryPeer& peer, const Message& message) override;
  void Tell(bool problem, const std::string& text) override;

  void Advertise(bool leaving) const;
  void TraceMessage(const std::string& direction, const std::string& address, const Message& message) const;

  asio::io_context& io_;
  Listeners& listeners_;
  Log& log_;
  OnReply on_reply_;
  AgentSettings settings_;
  bool broadcast_only_ = false;
  bool trace_ = false;
  Advertiser advertiser_;
  DirectoryClientSettings client_settings_;
  DirectoryNames names_;
  DirectoryClient client_;
  std::map<std::string, std::weak_ptr<StreamRequest>> streams_;  ///< by the peer's address
};

}  // namespace slp
