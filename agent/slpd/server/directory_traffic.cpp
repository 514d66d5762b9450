#include "slpd/server/directory_traffic.h"

#include <utility>

#include "slpd/directory/advertisement.h"
#include "wire/codec.h"

namespace slp {

void DirectoryTraffic::Apply(const AgentSettings& settings, bool broadcast_only, Instant now) {
  if (advertiser_.running() && !settings.directory_agent) {
    Leave();
  }
  settings_ = settings;
  broadcast_only_ = broadcast_only;
  if (settings_.directory_agent) {
    advertiser_.Start(settings_.heartbeat, now);
  }
}

void DirectoryTraffic::Tick(Instant now) {
  if (advertiser_.TakeDue(now)) {
    Advertise(false);
  }
}

void DirectoryTraffic::Leave() {
  if (advertiser_.running()) {
    Advertise(true);
    advertiser_.Stop();
  }
}

// An advertisement must fit a datagram; one that is too long leaves the attributes out, which it may.
void DirectoryTraffic::Advertise(bool leaving) const {
  listeners_.SendToAll(broadcast_only_, [&](const std::string& address) {
    Message message = MakeUnsolicitedAdvertisement(settings_, address, leaving);
    Result<Bytes> bytes = Encode(message);
    if (!bytes || bytes->size() > settings_.mtu) {
      std::get<DaAdvert>(message.body).attributes.clear();
      bytes = Encode(message);
    }
    return bytes ? std::move(bytes).value() : Bytes();
  });
}

}  // namespace slp
