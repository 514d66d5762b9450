// When a directory agent advertises itself without being asked (RFC 2608 section 12.2.2). No clock and no
// sockets. One thread at a time.
#pragma once

#include <cstddef>
#include <optional>

#include "slpd/seconds.h"

namespace slp {

class Advertiser {
 public:
  /// The role begins, or what is advertised has changed: due at `first`, then again after 2 and 4 seconds
  /// more, since nobody acknowledges an advertisement and the next one is hours away; from then on at each
  /// heart beat.
  void Start(Seconds heartbeat, Instant first);

  /// The role has ended: nothing is due any more.
  void Stop() { next_.reset(); }

  bool running() const { return next_.has_value(); }

  /// Whether an advertisement is to be sent now; then the next one is due later.
  [[nodiscard]] bool TakeDue(Instant now);

  /// When TakeDue has something to say; none outside the role.
  std::optional<Instant> NextDue() const { return next_; }

 private:
  Seconds heartbeat_{0};
  std::optional<Instant> next_;
  std::size_t sent_ = 0;
};

}  // namespace slp
