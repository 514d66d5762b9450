// How often one directory agent lets a service be registered anew (RFC 2608 section 8.5). No clock. One
// thread at a time.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "slpd/directory/registration_renewals.h"
#include "slpd/seconds.h"

namespace slp {

/// The longest interval that is heeded. Nobody can vouch for an advertisement, and one that asks for more
/// must neither let services end at the agent before they may be renewed nor keep changes from it for longer.
inline constexpr Seconds kLongestRefreshInterval = kLongestToldLifetime / 2;

/// The interval of an advertisement's attribute list, as far as it is heeded.
Seconds MinimumRefreshInterval(std::string_view attributes);

class RefreshLimit {
 public:
  using Key = std::pair<std::string, std::string>;  ///< URL and language

  /// The interval from now on; what waits is due at once, and has to ask again.
  void SetInterval(Seconds interval);
  Seconds interval() const { return interval_; }

  /// The service has been registered just now.
  void Told(const Key& service, Instant now);

  /// Whether it is too early to register the service anew; then it is due as soon as it no longer is.
  [[nodiscard]] bool Postpone(const Key& service, Instant now);

  /// Takes one that was postponed and is due; none when there is none.
  std::optional<Key> TakeDue(Instant now);

  std::optional<Instant> NextDue() const;

  /// The service is not registered any more.
  void Forget(const Key& service);
  void Clear();

 private:
  Seconds interval_{0};
  std::map<Key, Instant> told_;  ///< nothing without an interval
  std::set<std::pair<Instant, Key>> postponed_;
};

}  // namespace slp
