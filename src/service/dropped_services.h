// Telling the application about services that could not be kept registered. Any thread may call it.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "kelsd/SResult.h"

namespace kelsd {

/// A service that was given up, and how the last attempt to renew it failed.
struct SDroppedService {
  std::string url;
  SResult result;
};

/// A queue of reports and the application's callback for them. The callback runs with no lock held and may
/// wait for whatever it likes; whoever comes meanwhile leaves further reports to the thread that is
/// delivering, so that no thread ever waits for a callback.
class DroppedServiceReports {
 public:
  using Callback = std::function<void(std::string, SResult)>;

  /// Takes effect with the next report; a running call goes on with the old one.
  void SetCallback(Callback callback);
  void Add(std::list<SDroppedService> dropped) noexcept;
  /// Reports what is queued, one at a time in order. What the callback throws is swallowed; without a
  /// callback the reports are lost.
  void Deliver() noexcept;

 private:
  std::mutex mutex_;
  std::shared_ptr<const Callback> callback_;
  std::list<SDroppedService> queue_;
  bool delivering_ = false;
};

}  // namespace kelsd
