#include "slpd/server/host_interfaces.h"

#include <chrono>
#include <utility>

namespace slp {
namespace {

// How long the list is trusted while requests come in.
constexpr std::chrono::seconds kStaysFor{5};

constexpr std::chrono::seconds kRetryAfter{1};

}  // namespace

HostInterfaces::HostInterfaces(asio::io_context& io, Log& log, Source source, std::function<void()> try_again)
    : log_(log),
      source_(std::move(source)),
      try_again_(std::move(try_again)),
      retry_(io),
      self_(this, [](HostInterfaces*) {}) {}

const std::vector<Interface>& HostInterfaces::Current(bool with_ipv6, Instant now) {
  since_ = now;
  if (std::optional<std::vector<Interface>> listed = source_(with_ipv6)) {
    known_ = std::move(*listed);
    failing_ = false;
  } else {
    OnFailure();
  }
  return known_;
}

const std::vector<Interface>& HostInterfaces::Recent(bool with_ipv6, Instant now) {
  return !since_ || now - *since_ > kStaysFor ? Current(with_ipv6, now) : known_;
}

void HostInterfaces::Stop() {
  stopped_ = true;
  retry_.cancel();
}

void HostInterfaces::OnFailure() {
  if (!std::exchange(failing_, true)) {
    log_.Write(
        LogKind::kProblem,
        "the system does not list this host's interfaces: slpd goes on with those that it knows and asks "
        "again every second; if this stays so, allow slpd more open files and memory");
  }
  TryAgain(kRetryAfter);
}

void HostInterfaces::TryAgain(std::chrono::seconds after) {
  const auto due = std::chrono::steady_clock::now() + after;
  if (stopped_ || (waiting_ && retry_.expiry() <= due)) {
    return;
  }
  waiting_ = true;
  retry_.expires_at(due);
  retry_.async_wait([weak = std::weak_ptr(self_)](const asio::error_code& error) {
    if (const auto self = weak.lock(); self && !error) {
      self->waiting_ = false;
      self->try_again_();
    }
  });
}

}  // namespace slp
