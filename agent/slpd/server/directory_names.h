// Directory agents that are configured by their hosts' names: looks the names up, again and again, while the
// daemon goes on, and may end whatever becomes of that. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "net/host_lookups.h"
#include "slpd/seconds.h"
#include "slpd/server/log.h"

namespace slp {

class DirectoryNames {
 public:
  /// The wait behind the first failure of a name.
  static constexpr Instant kFirstRetry{Seconds(15)};

  /// `io` and `log` outlive it; `changed` is called from the loop when other addresses are known.
  DirectoryNames(asio::io_context& io, Log& log, std::function<void()> changed,
                 HostLookups::Resolve resolve = HostLookups::AskSystem, Instant first_retry = kFirstRetry);
  DirectoryNames(const DirectoryNames&) = delete;
  DirectoryNames& operator=(const DirectoryNames&) = delete;
  ~DirectoryNames();

  /// The names from now on, looked up at once, with `ipv6` for addresses of both versions, and then each time
  /// `again` has passed; sooner when one is not found, behind a wait that each further failure doubles, up to
  /// `again`. What is known of those that stay is kept. A name that is not found goes to the log, once until
  /// it is found, and keeps the addresses that it had.
  void Apply(const std::vector<std::string>& names, bool ipv6, Seconds again);

  /// The addresses that the names stand for, as far as they are known, each once.
  std::vector<std::string> Addresses() const;

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace slp
