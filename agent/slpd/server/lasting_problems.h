// Which problems to tell while the daemon follows its interfaces, where the same ones come up at each change.
// One thread at a time.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "slpd/seconds.h"

namespace slp {

class LastingProblems {
 public:
  /// How long one must have been there to be told: an address of IPv6 can't be used before other hosts have
  /// had the time to object to it.
  static constexpr Seconds kLasting{2};

  static constexpr Seconds kNew{60};
  static constexpr Seconds kSoon{3};
  static constexpr Seconds kLater{60};

  /// These are all that there are, and are told.
  void Start(const std::vector<std::string>& problems, Instant now);

  /// These are all that there are now. Those to tell, each once as long as it is there.
  std::vector<std::string> Review(const std::vector<std::string>& problems, Instant now);

  /// These are there, too. Those to tell at once: that were not told yet.
  std::vector<std::string> Add(const std::vector<std::string>& problems, Instant now);

  /// How long to wait before looking whether they have gone by themselves, as a port does that another
  /// program has held: shortly while one is new, longer when all are old; none without any.
  std::optional<Seconds> ReviewAfter(Instant now) const;

 private:
  struct State {
    Instant since;
    bool told;
  };
  std::map<std::string, State> present_;
};

}  // namespace slp
