// Directory agents that are configured by their hosts' names: looks the names up, again and again, while the
// daemon goes on. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "slpd/seconds.h"
#include "slpd/server/log.h"

namespace slp {

class DirectoryNames {
 public:
  /// `io` and `log` outlive it; `changed` is called from the loop when other addresses are known.
  DirectoryNames(asio::io_context& io, Log& log, std::function<void()> changed);
  DirectoryNames(const DirectoryNames&) = delete;
  DirectoryNames& operator=(const DirectoryNames&) = delete;
  ~DirectoryNames();

  /// The names from now on, looked up at once and then each time `again` has passed. What is known of those
  /// that stay is kept. A name that is not found goes to the log, and keeps the addresses that it had.
  void Apply(const std::vector<std::string>& names, Seconds again);

  /// The IPv4 addresses that the names stand for, as far as they are known, each once.
  std::vector<std::string> Addresses() const;

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace slp
