#include "slpd/directory/registration_message.h"

#include <algorithm>

#include "slpd/directory/refresh_limit.h"
#include "slpd/directory/registration_renewals.h"
#include "text/string_list.h"

namespace slp {
namespace {

std::vector<std::string> Common(const std::vector<std::string>& wanted,
                                const std::vector<std::string>& served) {
  std::vector<std::string> common = wanted;
  std::erase_if(common, [&](const std::string& scope) { return !ListContains(served, scope); });
  return common;
}

std::uint16_t SecondsLeft(const RegistrationView& registration, Instant now) {
  if (!registration.expiry) {
    return kMaximumLifetime;
  }
  const auto left = std::chrono::ceil<Seconds>(*registration.expiry - now).count();
  return static_cast<std::uint16_t>(std::clamp<decltype(left)>(left, 1, registration.lifetime));
}

/// The lifetime at an agent that wants no refresh sooner than after `interval`: a renewal has to come in
/// time.
std::uint16_t LifetimeToTell(const RegistrationView& registration, Seconds interval, Instant now) {
  static_assert(2 * kLongestRefreshInterval <= kLongestToldLifetime);
  const Seconds left = std::min(Seconds(SecondsLeft(registration, now)), kLongestToldLifetime);
  return static_cast<std::uint16_t>(std::max(left, 2 * interval).count());
}

/// Whether the agent is to have the URL in some language: a deregistration ends it in all of them. What
/// another host has registered is not ours to take.
bool IsToBeThere(const Registry& registry, std::string_view url, const std::vector<std::string>& served) {
  bool wanted = false;
  registry.ForEachOf(url, [&](const RegistrationView& registration) {
    wanted = wanted || registration.source == RegistrationSource::kAgent ||
             !Common(SplitStringList(registration.scopes), served).empty();
  });
  return wanted;
}

}  // namespace

// 1. What is registered now is registered there with the seconds that it has left, in those of its scopes
// that the agent serves (RFC 2608 section 8.3).
// 2. What has gone, or has moved to scopes that the agent doesn't serve, is deregistered, unless the URL is
// registered again; at the end all goes.
std::optional<Message> RegistrationMessage(const Registry& registry, const RegistrationQueue::Job& job,
                                           const RegistrationTarget& target, bool leaving, Instant now) {
  const std::optional<RegistrationView> registered =
      leaving ? std::nullopt : registry.Find(job.url, job.language);
  Message message;
  message.header.language = job.language;
  if (registered && registered->source != RegistrationSource::kAgent) {
    const auto scopes = Common(SplitStringList(registered->scopes), target.scopes);
    if (!scopes.empty()) {
      message.header.fresh = true;
      message.body = SrvReg{.url = {LifetimeToTell(*registered, target.interval, now), job.url, {}},
                            .service_type = std::string(registered->service_type),
                            .scopes = JoinStringList(scopes),
                            .attributes = std::string(registered->attributes),
                            .authentication = {}};
      return message;
    }
  }
  if (!job.deregister || (!leaving && IsToBeThere(registry, job.url, target.scopes))) {
    return std::nullopt;
  }
  const auto scopes = Common(SplitStringList(*job.deregister), target.scopes);
  if (scopes.empty()) {
    return std::nullopt;
  }
  message.body = SrvDereg{.scopes = JoinStringList(scopes), .url = {0, job.url, {}}, .tags = {}};
  return message;
}

}  // namespace slp
