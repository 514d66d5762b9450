#include "slpd/requests/reply_rate.h"

#include "text/keyed_hash.h"

namespace slp {
namespace {

constexpr std::size_t kPlaces = 4096;
constexpr Seconds kPeriod{1};

}  // namespace

ReplyRate::ReplyRate() : counts_(kPlaces) {}

bool ReplyRate::Take(std::string_view address, Instant now, std::size_t per_second) {
  Count& count = counts_[TextHash{}(address) % kPlaces];
  if (count.taken == 0 || now - count.since >= kPeriod) {
    count = {now, 0};
  }
  if (count.taken >= per_second) {
    return false;
  }
  ++count.taken;
  return true;
}

}  // namespace slp
