#include "slpd/directory/registration_renewals.h"

#include <algorithm>

namespace slp {
namespace {

/// What an agent refuses is tried again after this, doubled each time up to the last.
constexpr Seconds kFirstRetry{5};
constexpr Seconds kLastRetry{300};

}  // namespace

void RegistrationRenewals::Start(Instant now) {
  Clear();
  round_ = now + kRenewalRound;
}

void RegistrationRenewals::Clear() {
  *this = {};
}

bool RegistrationRenewals::TakeRound(Instant now) {
  if (!round_ || *round_ > now) {
    return false;
  }
  round_ = now + kRenewalRound;
  return true;
}

void RegistrationRenewals::Plan(const Key& service, Instant when) {
  const auto [planned, added] = planned_.try_emplace(service, when);
  if (!added) {
    due_.erase({planned->second, service});
    planned->second = std::min(planned->second, when);
  }
  due_.emplace(planned->second, service);
}

bool RegistrationRenewals::Refused(const Key& service, Instant now) {
  const auto [found, first] = refused_.try_emplace(service, Refusal{now, kFirstRetry});
  Refusal& refusal = found->second;
  if (!first) {
    refusal.wait = std::min(refusal.wait * 2, kLastRetry);
  }
  if (now <= refusal.first + kLongestToldLifetime) {
    Plan(service, now + refusal.wait);
  }
  return first;
}

bool RegistrationRenewals::Taken(const Key& service) {
  return refused_.erase(service) > 0;
}

void RegistrationRenewals::Forget(const Key& service) {
  refused_.erase(service);
  if (const auto planned = planned_.find(service); planned != planned_.end()) {
    due_.erase({planned->second, service});
    planned_.erase(planned);
  }
}

std::optional<RegistrationRenewals::Key> RegistrationRenewals::TakeDue(Instant now) {
  if (due_.empty() || due_.begin()->first > now) {
    return std::nullopt;
  }
  Key service = std::move(due_.extract(due_.begin()).value().second);
  planned_.erase(service);
  return service;
}

std::optional<Instant> RegistrationRenewals::NextDue() const {
  if (due_.empty()) {
    return round_;
  }
  return round_ ? std::min(*round_, due_.begin()->first) : due_.begin()->first;
}

}  // namespace slp
