// The library of this process with a daemon of its own: on loopback only, on a free port, with all files in a
// temporary folder. Every test runs in a process of its own, so the library starts fresh. One thread, but for
// Find, which any thread may call.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "support/free_port.h"
#include "support/host_daemon/host_daemon.h"
#include "support/same_result.h"

namespace kelsd::integration {

using std::chrono::milliseconds;

/// What a machine that is busy with other things, or stands still, may add to any time that a test allows. No
/// test takes it for a limit of its own.
inline constexpr milliseconds kSlack{30000};

class ServiceTest : public testing::Test {
 protected:
  /// A configuration with the scope TAMRO.
  void SetUp() override { WriteConfiguration("net.slp.useScopes = TAMRO\n"); }
  /// Stops the daemon, and lets no watchdog start it again.
  void TearDown() override;

  /// Writes the file: interface and port, then `further_lines`.
  void WriteConfiguration(const std::string& further_lines) const;
  std::string Configuration() const { return support::FileContent(File("slp.conf")); }

  support::HostDaemon& daemon() { return daemon_; }
  /// The process that serves, 0 when none does.
  unsigned long DaemonPid() const { return daemon_.ProcessId(); }
  /// How often the daemon's program was started so far.
  int DaemonStarts() const { return daemon_.Starts(); }

  std::string File(const std::string& name) const { return daemon_.File(name); }
  std::string Log() const { return support::FileContent(File("slpd.log")); }
  std::uint16_t port() const { return port_; }

 private:
  support::HostDaemon daemon_;
  std::uint16_t port_ = slp::support::FreePort();
};

/// The sorted URLs that a unicast search finds, or the text of its failure.
std::vector<std::string> Find(const std::string& type, const std::vector<std::string>& scopes = {});

/// Whether `done` became true within `limit`. Nothing tells of changes in other processes: it looks again
/// after a short pause.
bool WaitUntil(milliseconds limit, const std::function<bool()>& done);

inline auto Succeeded() {
  return SameResult(SResult(SResult::ERR_SUCCESS));
}

}  // namespace kelsd::integration
