// Answers messages: from the bytes of a request to the bytes of its reply (RFC 2608 sections 7 to 11). No
// sockets and no clock. One thread at a time, the registry's.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "slpd/agent_settings.h"
#include "slpd/event_sink.h"
#include "slpd/registry/registry.h"
#include "slpd/request_origin.h"
#include "slpd/requests/reply_rate.h"
#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

class RequestHandler {
 public:
  /// Whether a process is to be seen from here; asked when a registration asks to be bound to one.
  using ProcessProbe = std::function<bool(std::uint32_t process_id)>;

  /// The URLs of the known directory agents that serve one of the scopes, of all for no scopes.
  using KnownAgents = std::function<std::vector<std::string>(const std::vector<std::string>& scopes)>;

  /// `registry` and `events` must outlive the handler; `settings` are copied. Without a probe every process
  /// is taken to exist.
  RequestHandler(Registry& registry, const AgentSettings& settings, EventSink& events,
                 ProcessProbe process_exists = nullptr);

  /// Where the own host's programs learn of directory agents; without it none are known.
  void SetKnownAgents(KnownAgents known_agents) { known_agents_ = std::move(known_agents); }

  /// The settings from now on, after a reload; what is registered stays.
  void SetSettings(const AgentSettings& settings);
  const AgentSettings& settings() const { return settings_; }

  /// How long a request has to wait until Handle can answer it; 0: not at all. Only a stream's has to, by
  /// which nobody asks again (RFC 2608 section 6.2): for the advertisement of a directory agent that is not
  /// yet told to others.
  Instant WaitBefore(std::span<const std::uint8_t> request, const RequestOrigin& origin, Instant now) const;

  /// The reply to send back to where `request` (one whole message) came from; none: no answer. Never longer
  /// than the MTU over UDP, and never longer than the request to a UDP sender beyond the own and the trusted
  /// networks. A UDP reply that would be longer, or is one too many for a sender in this second, says nothing
  /// but its error and that there is more. What has expired by `now` is gone first.
  std::optional<Bytes> Handle(std::span<const std::uint8_t> request, const RequestOrigin& origin,
                              Instant now);

 private:
  Result<Bytes> EncodeFor(const Message& reply, const RequestOrigin& origin, std::size_t request_size,
                          Instant now);

  Registry& registry_;
  AgentSettings settings_;
  EventSink& events_;
  ProcessProbe process_exists_;
  KnownAgents known_agents_;
  ReplyRate reply_rate_;
};

}  // namespace slp
