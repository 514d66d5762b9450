// How many whole datagrams other hosts are sent: a host in whose name somebody asks again and again is not to
// be flooded by the answers. One thread at a time.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "slpd/seconds.h"

namespace slp {

class ReplyRate {
 public:
  ReplyRate();

  /// Whether `address` may be sent one more in the second that began with its first, of which `per_second`
  /// go; counts it when it may.
  [[nodiscard]] bool Take(std::string_view address, Instant now, std::size_t per_second);

 private:
  struct Count {
    Instant since{};
    std::size_t taken = 0;
  };

  // As many as there are, however many addresses are forged: those that share a place share its rate, and at
  // worst ask by TCP.
  std::vector<Count> counts_;
};

}  // namespace slp
