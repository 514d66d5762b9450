// What the daemon sends without having been asked: its advertisements as a directory agent. On the thread
// that runs the event loop.
#pragma once

#include <optional>

#include "slpd/agent_settings.h"
#include "slpd/directory/advertiser.h"
#include "slpd/seconds.h"
#include "slpd/server/listeners.h"

namespace slp {

class DirectoryTraffic {
 public:
  /// `listeners` outlive it.
  explicit DirectoryTraffic(Listeners& listeners) : listeners_(listeners) {}

  /// The settings from now on, with the boot timestamp in them; what others know of this agent is told anew.
  void Apply(const AgentSettings& settings, bool broadcast_only, Instant now);

  /// Sends what is due.
  void Tick(Instant now);

  /// When Tick has something to do; none: never.
  std::optional<Instant> NextDue() const { return advertiser_.NextDue(); }

  /// The daemon ends: says so.
  void Leave();

 private:
  void Advertise(bool leaving) const;

  Listeners& listeners_;
  AgentSettings settings_;
  bool broadcast_only_ = false;
  Advertiser advertiser_;
};

}  // namespace slp
