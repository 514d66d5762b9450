// The daemon as a service agent among directory agents: finds them, keeps track of which there are, and
// registers the own host's services with each that serves their scopes (RFC 2608 sections 8.3, 12.1
// and 12.2). No clock and no sockets; nothing blocks. One thread at a time, the registry's.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "slpd/directory/client_settings.h"
#include "slpd/directory/directory_wire.h"
#include "slpd/directory/discovery.h"
#include "slpd/directory/refresh_limit.h"
#include "slpd/directory/registration_queue.h"
#include "slpd/event_sink.h"
#include "slpd/registry.h"
#include "slpd/request_origin.h"
#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

class DirectoryClient {
 public:
  /// Any number, evenly distributed.
  using Random = std::function<std::uint32_t()>;

  /// More directory agents than these are not kept track of; who invents some cannot fill the memory.
  static constexpr std::size_t kMostAgents = 64;

  /// `registry` and `wire` outlive it.
  DirectoryClient(const Registry& registry, DirectoryWire& wire, Random random);

  /// The settings from now on. Those that change which agents are looked for begin the search anew; scopes
  /// that change have everything registered anew.
  void Apply(const DirectoryClientSettings& settings, Instant now);

  /// Something has changed in the registry. Only takes note.
  void OnRegistration(RegistrationEvent event, const RegistrationView& registration);

  /// A DAAdvert, asked for or not.
  void OnAdvertisement(const Message& message, const RequestOrigin& origin, Instant now);

  /// A SrvAck.
  void OnAcknowledgment(const Message& message, const RequestOrigin& origin, Instant now);

  /// Does what is due.
  void Tick(Instant now);

  /// When Tick has something to do; none: never.
  std::optional<Instant> NextDue(Instant now) const;

  /// The daemon ends: from now on nothing is done but telling every agent that the own services are gone.
  void Leave(Instant now);

  /// Whether, after Leave, every agent has acknowledged that, or has been given up.
  bool left() const;

  /// The URLs of the known agents that serve one of the scopes, of all for no scopes.
  std::vector<std::string> Serving(const std::vector<std::string>& scopes) const;

 private:
  /// A request that is on its way, and when it is sent again.
  struct Outstanding {
    Message message;
    bool stream = false;
    std::size_t tries = 0;
    Instant next{0};
  };

  struct Agent {
    DirectoryPeer peer;
    bool configured = false;
    bool known = false;  ///< has advertised itself and not said farewell
    std::string url;
    std::vector<std::string> scopes;
    std::uint32_t boot_timestamp = 0;
    RegistrationQueue queue;
    RefreshLimit refreshes;
    Instant register_from{0};           ///< a random wait before the first registration
    std::optional<Instant> ask_at;      ///< when to ask it for its advertisement
    bool ask_by_stream = false;         ///< it did not fit a datagram
    Seconds ask_again{0};               ///< the wait behind an ask that nobody answered
    std::optional<Instant> refresh_at;  ///< when all has to be registered again
    std::optional<Outstanding> outstanding;
  };

  bool WantsAdvertisement(const Message& message, const RequestOrigin& origin, const Agent* agent) const;
  void TakeAdvertisement(const DaAdvert& advert, const RequestOrigin& origin, Instant now);
  void Begin(Agent& agent, Instant now);
  void AskNow(Agent& agent, Instant now);
  void Lose(const std::string& address, const std::string& reason, Instant now);
  void Advance(Agent& agent, Instant now);
  bool Resend(Agent& agent, Instant now);
  void Start(Agent& agent, Message message, bool stream, Instant now);
  std::optional<Message> MessageFor(const Agent& agent, const RegistrationQueue::Job& job, Instant now);
  Message AskMessage();
  void Emit(const Agent& agent, const Outstanding& outstanding);
  void QueueEverything(Agent& agent);
  bool IsOwn(const std::string& address) const;
  Agent* Find(const std::string& address);
  Instant RandomWait();
  std::uint16_t NewXid();

  const Registry& registry_;
  DirectoryWire& wire_;
  Random random_;
  DirectoryClientSettings settings_;
  bool applied_ = false;
  bool leaving_ = false;
  Discovery discovery_;
  std::map<std::string, Agent> agents_;  ///< by address
};

}  // namespace slp
