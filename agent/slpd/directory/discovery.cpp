#include "slpd/directory/discovery.h"

#include <algorithm>

#include "text/ip_address.h"
#include "text/string_list.h"
#include "wire/codec.h"

namespace slp {
namespace {

constexpr int kQuietRoundsAtTheEnd = 2;

/// Nobody needs more; who invents senders cannot make a search hold more of them.
constexpr std::size_t kMostResponders = 256;

}  // namespace

void Discovery::Plan(Instant when) {
  if (!running_) {
    next_ = next_ ? std::min(*next_, when) : when;
  }
}

// 1. A new search has heard nobody.
// 2. It ends after two rounds in a row without anybody new, after the last of the timeouts, at the maximum,
// or when the request with its list of responders no longer fits a datagram. The next one begins after the
// interval.
bool Discovery::TakeDue(const DirectoryClientSettings& settings, std::uint16_t xid, Instant now) {
  if (!next_ || *next_ > now) {
    return false;
  }
  if (!running_) {
    *this = {};
    running_ = true;
    xid_ = xid;
    end_ = now + settings.discovery_maximum;
  } else {
    quiet_rounds_ = heard_somebody_new_ ? 0 : quiet_rounds_ + 1;
    heard_somebody_new_ = false;
    ++round_;
  }
  const Result<Bytes> request = Encode(Request(settings, true));
  if (round_ >= settings.discovery_waits.size() || quiet_rounds_ == kQuietRoundsAtTheEnd || now >= end_ ||
      !request || request->size() > settings.mtu) {
    End(settings, now);
    return false;
  }
  next_ = std::min(end_, now + settings.discovery_waits[round_]);
  return true;
}

Message Discovery::Request(const DirectoryClientSettings& settings, bool loopback) const {
  std::vector<std::string> responders = responders_;
  if (!loopback) {
    std::erase_if(responders, IsLoopbackAddress);
  }
  return {.header = {.request_multicast = true, .xid = xid_, .language = settings.language, .extensions = {}},
          .body = SrvRqst{.previous_responders = JoinStringList(responders),
                          .service_type = "service:directory-agent",
                          .scopes = {},
                          .predicate = {},
                          .spi = {}}};
}

void Discovery::AddResponder(const std::string& address) {
  if (responders_.size() < kMostResponders && !ListContains(responders_, address)) {
    responders_.push_back(address);
    heard_somebody_new_ = true;
  }
}

void Discovery::End(const DirectoryClientSettings& settings, Instant now) {
  *this = {};
  if (settings.interval > Seconds(0)) {
    next_ = now + settings.interval;
  }
}

}  // namespace slp
