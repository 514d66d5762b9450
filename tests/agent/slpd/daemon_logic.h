// The daemon's logic with everything around it, for tests: a registry, a handler over it, what they tell, and
// shorthands for requests and replies. One thread.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "agent/text/unlimited.h"
#include "slpd/registry/registry.h"
#include "slpd/requests/request_handler.h"
#include "wire/codec.h"
#include "wire/messages.h"

namespace slp {

/// Keeps one line for each event: "registered service:x://h en", "in 1", "out 2", "dropped REASON".
class RecordedEvents : public EventSink {
 public:
  void OnRegistration(RegistrationEvent event, const RegistrationView& registration) override;
  void OnMessageIn(const Message& message, const RequestOrigin& origin) override;
  void OnMessageOut(const Message& message, const RequestOrigin& origin, std::size_t size) override;
  void OnDropped(std::string_view reason, std::size_t size, const RequestOrigin& origin) override;
  void OnProcessNotWatched(std::uint32_t process_id, std::string_view url) override;
  void OnHostAtLimit(std::string_view host) override;
  void OnTooMuchToCompare(const RequestOrigin& origin, std::uint64_t services) override;

  /// The lines since the last call.
  std::vector<std::string> Take();

 private:
  std::vector<std::string> lines_;
};

/// A URL and the lifetime that a search shows for it.
struct Found {
  std::string url;
  std::uint16_t lifetime = 0;
  bool operator==(const Found&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Found& found);

/// "service:x://h" with the type "service:x", in the scope DEFAULT and the language "en" for an hour.
Registration MakeRegistration(std::string url, std::string type, std::string attributes = {});

ServiceQuery MakeQuery(std::string_view type, std::string_view predicate = {},
                       std::vector<std::string> scopes = {"DEFAULT"}, std::string language = "en");

/// What a search shows, sorted by URL.
std::vector<Found> FindAll(const Registry& registry, const ServiceQuery& query, Instant now);

/// The URLs alone.
std::vector<std::string> FindUrls(const Registry& registry, const ServiceQuery& query,
                                  Instant now = Seconds(0));

inline const RequestOrigin kOwnHost{"127.0.0.1", true, true, Transport::kUdpUnicast, ""};
inline const RequestOrigin kNeighbour{"10.0.0.7", false, true, Transport::kUdpUnicast, "10.0.0.1"};
inline const RequestOrigin kGroupMember{"10.0.0.7", false, true, Transport::kUdpMulticast, "10.0.0.1"};
inline const RequestOrigin kStranger{"192.0.2.9", false, false, Transport::kUdpUnicast, "10.0.0.1"};
inline const RequestOrigin kStreamPeer{"192.0.2.9", false, false, Transport::kTcp, "10.0.0.1"};

/// An agent that serves DEFAULT and TAMRO and has the addresses 10.0.0.1 and 127.0.0.1.
struct DaemonLogic {
  DaemonLogic();

  /// The decoded reply to `message`; none: no answer. The XID is 4711 and the language "en" unless `message`
  /// says otherwise. A reply that does not decode fails the test.
  std::optional<Message> Ask(const Message& message, const RequestOrigin& origin = kNeighbour);
  std::optional<Message> Ask(Body body, const RequestOrigin& origin = kNeighbour);

  /// The same for a request's bytes, whatever they are.
  std::optional<Message> Send(const Bytes& request, const RequestOrigin& origin);

  /// Registers from the own host; the acknowledged error.
  Error Register(const SrvReg& request, bool fresh = true, std::string language = "en",
                 std::vector<Extension> extensions = {});

  Instant now{1000};
  RecordedEvents events;
  Registry registry{events};
  std::vector<std::uint32_t> missing_processes;
  RequestHandler handler;
};

AgentSettings TestSettings();

Message MakeMessage(Body body, std::string language = "en");

/// In scope DEFAULT for an hour.
SrvReg MakeSrvReg(std::string url, std::string type, std::string attributes = {},
                  std::string scopes = "DEFAULT");
SrvRqst MakeSrvRqst(std::string type, std::string predicate = {}, std::string scopes = "DEFAULT");
AttrRqst MakeAttrRqst(std::string url, std::string tags = {}, std::string scopes = "DEFAULT");

/// The reply that carries `body` to a request of MakeMessage.
std::optional<Message> ReplyOf(Body body, std::string language = "en");

}  // namespace slp
