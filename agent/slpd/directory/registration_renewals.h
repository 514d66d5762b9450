// When one directory agent has to be told of services once more: before what it was told ends there, and
// after it has refused one. No clock. One thread at a time.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "slpd/seconds.h"

namespace slp {

/// The longest lifetime that a directory agent is told; what lives longer is renewed there. A host that has
/// got another address can change nothing that it registered from the earlier one, which goes by itself after
/// this (the default lifetime of RFC 2614 section 3.2.1).
inline constexpr Seconds kLongestToldLifetime{10800};

/// What lives longer is renewed in rounds, each service at a moment of its own within the first half of the
/// round: a quarter of the lifetime is left for an agent that does not answer at once.
inline constexpr Seconds kRenewalRound = kLongestToldLifetime / 2;
inline constexpr Seconds kRenewalSpread = kRenewalRound / 2;

class RegistrationRenewals {
 public:
  using Key = std::pair<std::string, std::string>;  ///< URL and language

  /// Everything has been told just now: the first round is a round away, and nothing else is due.
  void Start(Instant now);

  /// Nothing is due any more.
  void Clear();

  /// Whether a round begins now; then what lives long is to be planned.
  [[nodiscard]] bool TakeRound(Instant now);

  /// The service is due at `when`, or earlier if it was to be.
  void Plan(const Key& service, Instant when);

  /// The agent has refused the service: due again, after longer and longer waits, until whatever it held when
  /// it first refused must have ended there. Whether it had not refused it before.
  bool Refused(const Key& service, Instant now);

  /// The agent has taken the service. Whether it had refused it before.
  bool Taken(const Key& service);

  /// The service is not registered any more.
  void Forget(const Key& service);

  /// Takes a service that is due; none when there is none.
  std::optional<Key> TakeDue(Instant now);

  /// When a round or a service is due; none: never.
  std::optional<Instant> NextDue() const;

 private:
  struct Refusal {
    Instant first{0};
    Seconds wait{0};  ///< behind the latest one
  };

  std::optional<Instant> round_;
  std::map<Key, Instant> planned_;
  std::set<std::pair<Instant, Key>> due_;  ///< the same, by time
  std::map<Key, Refusal> refused_;
};

}  // namespace slp
