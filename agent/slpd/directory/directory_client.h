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
#include "slpd/directory/registration_renewals.h"
#include "slpd/event_sink.h"
#include "slpd/registry/registry.h"
#include "slpd/request_origin.h"
#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

class DirectoryClient {
 public:
  /// Any number, evenly distributed.
  using Random = std::function<std::uint32_t()>;

  /// More directory agents than these, beside the configured ones, are not kept track of; who invents some
  /// can neither fill the memory nor keep out those that are configured.
  static constexpr std::size_t kMostAgents = 64;

  /// Of these, as many may be such that stand beyond the own and the trusted networks and have not answered
  /// yet: anybody can send in their names, and they take no place from the others.
  static constexpr std::size_t kMostStrangers = 32;

  /// `registry` and `wire` outlive it.
  DirectoryClient(const Registry& registry, DirectoryWire& wire, Random random);

  /// The settings from now on. Those that change which agents are looked for begin the search anew; scopes
  /// that change have everything registered anew.
  void Apply(const DirectoryClientSettings& settings, Instant now);

  /// Something has changed in the registry. Only takes note.
  void OnRegistration(RegistrationEvent event, const RegistrationView& registration);

  /// A DAAdvert of `size` bytes. One that was not asked for only has its sender asked, and that with no more
  /// bytes where it stands beyond the own and the trusted networks: its address may be forged.
  void OnAdvertisement(const Message& message, std::size_t size, const RequestOrigin& origin, Instant now);

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

  /// Somebody relies on the known agents: each one is asked whether it is there, as soon as its latest answer
  /// is five seconds old, and so no more often, however often this is called.
  void CheckSoon(Instant now);

 private:
  /// A request that is on its way, and when it is sent again.
  struct Outstanding {
    Message message;
    bool stream = false;
    std::size_t tries = 0;
    Instant next{0};
    bool once = false;      ///< not sent again, and the agent need not have got it
    bool farewell = false;  ///< a question whether it is really going down
  };

  /// What an advertisement says that nobody has asked for. Only the agent's own answer makes it true.
  struct Hint {
    Instant ask_at{0};
    bool farewell = false;
  };

  struct Agent {
    DirectoryPeer peer;
    bool configured = false;
    bool known = false;   ///< has answered with its advertisement and not said farewell
    bool beyond = false;  ///< the own and the trusted networks
    std::string url;
    std::vector<std::string> scopes;
    std::uint32_t boot_timestamp = 0;
    Instant answered_at{0};  ///< whatever it was asked
    RegistrationQueue queue;
    RefreshLimit refreshes;
    RegistrationRenewals renewals;
    Instant register_from{0};       ///< a random wait before the first registration
    std::optional<Instant> ask_at;  ///< when to ask it for its advertisement
    bool ask_by_stream = false;     ///< it did not fit a datagram
    Seconds ask_again{0};           ///< the wait behind an ask that brought no advertisement
    std::string fault;              ///< why its answer was of no use, as has been told
    std::optional<Hint> hint;
    Instant next_question{0};  ///< no earlier one because of a hint
    std::optional<Outstanding> outstanding;

    bool Is(const DaAdvert& advert) const;  ///< known just so
    bool Forgettable() const;               ///< nothing is known of it, and nothing to be done
  };

  bool WantsAdvertisement(const Message& message, const RequestOrigin& origin, const Agent* agent) const;
  void TakeAdvertisement(const DaAdvert& advert, const RequestOrigin& origin, Instant now);
  void TakeUselessAnswer(Agent& agent, const std::string& fault, Instant now);
  void TakeHint(const Message& message, std::size_t size, const RequestOrigin& origin, Instant now);
  void AskByStream(const RequestOrigin& origin, Instant now);
  void AskForHint(Agent& agent, Instant now);
  void PlanCheck(Agent& agent, Instant now) const;
  void Search(Instant now);
  void Begin(Agent& agent, Instant now);
  void TakeSilence(const std::string& address, Instant now);
  void Lose(const std::string& address, const std::string& reason, Instant now);
  void Advance(Agent& agent, Instant now);
  bool Resend(Agent& agent, Instant now);
  void Start(Agent& agent, Message message, bool stream, Instant now);
  Message AskMessage();
  std::size_t QuestionSize();
  void Emit(const Agent& agent, const Outstanding& outstanding);
  void QueueEverything(Agent& agent);
  void QueueRenewals(Agent& agent, Instant now);
  void TakeAnswer(Agent& agent, const SrvReg& registration, Error error, Instant now);
  void TellNext(Agent& agent, Instant now);
  bool IsOwn(const std::string& address) const;
  Agent* Find(const std::string& address);
  bool HasRoom(bool beyond) const;
  Instant RandomWait();
  std::uint16_t NewXid();

  const Registry& registry_;
  DirectoryWire& wire_;
  Random random_;
  DirectoryClientSettings settings_;
  bool applied_ = false;
  bool leaving_ = false;
  Discovery discovery_;
  Instant search_began_{0};
  std::map<std::string, Agent> agents_;  ///< by address
};

}  // namespace slp
