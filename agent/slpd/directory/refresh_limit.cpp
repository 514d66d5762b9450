#include "slpd/directory/refresh_limit.h"

#include <algorithm>

#include "text/refresh_interval.h"

namespace slp {

Seconds MinimumRefreshInterval(std::string_view attributes) {
  return std::min(AdvertisedRefreshInterval(attributes), kLongestRefreshInterval);
}

void RefreshLimit::SetInterval(Seconds interval) {
  if (std::exchange(interval_, interval) == interval) {
    return;
  }
  std::set<std::pair<Instant, Key>> postponed;
  for (const auto& [due, service] : postponed_) {
    postponed.emplace(Instant(0), service);
  }
  postponed_ = std::move(postponed);
  if (interval_ == Seconds(0)) {
    told_.clear();
  }
}

void RefreshLimit::Told(const Key& service, Instant now) {
  if (interval_ > Seconds(0)) {
    told_.insert_or_assign(service, now);
  }
}

bool RefreshLimit::Postpone(const Key& service, Instant now) {
  const auto told = told_.find(service);
  if (told == told_.end() || told->second + interval_ <= now) {
    return false;
  }
  postponed_.emplace(told->second + interval_, service);
  return true;
}

std::optional<RefreshLimit::Key> RefreshLimit::TakeDue(Instant now) {
  if (postponed_.empty() || postponed_.begin()->first > now) {
    return std::nullopt;
  }
  return std::move(postponed_.extract(postponed_.begin()).value().second);
}

std::optional<Instant> RefreshLimit::NextDue() const {
  return postponed_.empty() ? std::nullopt : std::optional(postponed_.begin()->first);
}

void RefreshLimit::Forget(const Key& service) {
  if (const auto told = told_.find(service); told != told_.end()) {
    postponed_.erase({told->second + interval_, service});
    told_.erase(told);
  }
}

void RefreshLimit::Clear() {
  told_.clear();
  postponed_.clear();
}

}  // namespace slp
