// Makes one event of reports that come shortly after each other. A value; one thread at a time.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace slp {

class ReportGathering {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  /// A report has come: when to act on it and on those before it, unless another one comes first.
  Moment OnReport(Moment now) {
    if (!first_) {
      first_ = now;
    }
    return std::min(now + kQuietTime, *first_ + kLongestWait);
  }

  /// What has been reported so far is dealt with.
  void OnActed() { first_.reset(); }

 private:
  // An interface that comes up reports several times.
  static constexpr std::chrono::milliseconds kQuietTime{300};

  // Another one that never settles must not keep it waiting.
  static constexpr std::chrono::milliseconds kLongestWait{600};

  std::optional<Moment> first_;  ///< of the reports that nobody has acted on
};

}  // namespace slp
