// The interfaces of this host as the daemon knows them. While the system does not list them, those that it
// listed last stand: nothing that is served is given up for want of an answer. On the thread that runs the
// event loop.
#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "net/interfaces.h"
#include "slpd/seconds.h"
#include "slpd/server/log.h"

namespace slp {

class HostInterfaces {
 public:
  /// As EnumerateInterfaces.
  using Source = std::function<std::optional<std::vector<Interface>>(bool with_ipv6)>;

  /// `io` and `log` outlive it. `try_again` is called from the loop a second after the system has not listed
  /// the interfaces, which is told once until it does.
  HostInterfaces(asio::io_context& io, Log& log, Source source, std::function<void()> try_again);
  HostInterfaces(const HostInterfaces&) = delete;
  HostInterfaces& operator=(const HostInterfaces&) = delete;

  /// As they are now.
  const std::vector<Interface>& Current(bool with_ipv6, Instant now);

  /// As they were some seconds ago, perhaps.
  const std::vector<Interface>& Recent(bool with_ipv6, Instant now);

  /// Has `try_again` called after that time, if it isn't to be called before.
  void TryAgain(std::chrono::seconds after);

  /// Does not try again any more, whatever happens.
  void Stop();

 private:
  void OnFailure();

  Log& log_;
  Source source_;
  std::function<void()> try_again_;
  asio::steady_timer retry_;
  std::vector<Interface> known_;
  std::optional<Instant> since_;
  bool failing_ = false;
  bool waiting_ = false;  ///< `try_again` is to be called when `retry_` expires
  bool stopped_ = false;
  // Owns nothing; the wait holds it weakly, as its handler may come when this is gone.
  std::shared_ptr<HostInterfaces> self_;
};

}  // namespace slp
