// The active search for directory agents: when to ask the group, and who has answered (RFC 2608 sections 6.3
// and 12.2.1). No clock and no sockets. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "slpd/directory/client_settings.h"
#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

class Discovery {
 public:
  /// A search begins at `when`, or earlier if one was planned earlier. One that runs goes on.
  void Plan(Instant when);

  void Stop() { *this = {}; }

  /// Whether a round begins now: then Request is to be sent to all. `xid` is taken for a new search.
  [[nodiscard]] bool TakeDue(const DirectoryClientSettings& settings, std::uint16_t xid, Instant now);

  /// The request of this round. To networks other than loopback, loopback addresses say nothing.
  Message Request(const DirectoryClientSettings& settings, bool loopback) const;

  /// Whether there has been a round of a search that has not ended.
  bool running() const { return running_; }

  /// Whether a reply with this transaction id belongs to the search that runs.
  bool Answers(std::uint16_t xid) const { return running_ && xid == xid_; }

  /// Somebody has answered.
  void AddResponder(const std::string& address);

  std::optional<Instant> NextDue() const { return next_; }

 private:
  void End(const DirectoryClientSettings& settings, Instant now);

  std::optional<Instant> next_;
  bool running_ = false;
  std::uint16_t xid_ = 0;
  std::size_t round_ = 0;
  int quiet_rounds_ = 0;
  bool heard_somebody_new_ = false;
  Instant end_{0};
  std::vector<std::string> responders_;
};

}  // namespace slp
