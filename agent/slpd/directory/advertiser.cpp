#include "slpd/directory/advertiser.h"

#include <algorithm>
#include <iterator>

namespace slp {
namespace {

/// Waits behind the first advertisements, doubled each time from CONFIG_RETRY on (RFC 2608 section 13).
constexpr Seconds kFirstWaits[] = {Seconds(2), Seconds(4)};

}  // namespace

void Advertiser::Start(Seconds heartbeat, Instant first) {
  heartbeat_ = heartbeat;
  next_ = first;
  sent_ = 0;
}

bool Advertiser::TakeDue(Instant now) {
  if (!next_ || *next_ > now) {
    return false;
  }
  const Seconds wait = sent_ < std::size(kFirstWaits) ? std::min(kFirstWaits[sent_], heartbeat_) : heartbeat_;
  ++sent_;
  next_ = now + wait;
  return true;
}

}  // namespace slp
