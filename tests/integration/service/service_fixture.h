// The library of this process with a daemon of its own: on loopback only, on a free port, with all files in a
// temporary folder. Every test runs in a process of its own, so the library starts fresh. One thread, but for
// Find, which any thread may call.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "support/same_result.h"

namespace kelsd::integration {

using std::chrono::milliseconds;

/// What a machine that is busy with other things may add to any time that a test allows.
inline constexpr milliseconds kSlack{5000};

/// Names the environment for the library, and gives back all of it at the end: also when the test process
/// crashes, no daemon and no folder stays.
class ServiceTest : public testing::Test {
 protected:
  ServiceTest();
  ~ServiceTest() override;

  /// A configuration with the scope TAMRO.
  void SetUp() override { WriteConfiguration("net.slp.useScopes = TAMRO\n"); }
  /// Stops the daemon, and lets no watchdog start it again.
  void TearDown() override;

  /// Writes the file: interface and port, then `further_lines`.
  void WriteConfiguration(const std::string& further_lines) const;
  std::string Configuration() const;

  /// The process that serves, 0 when none does.
  pid_t DaemonPid() const;
  /// How often the daemon's program was started so far.
  int DaemonStarts() const;

  std::string File(const std::string& name) const { return folder_ + "/" + name; }
  std::string PidFile() const { return File("slpd.pid"); }
  std::string Log() const;
  std::uint16_t port() const { return port_; }

 private:
  void WriteStartCountingProgram() const;
  void StartCleaner();

  std::string folder_;
  std::uint16_t port_ = 0;
  pid_t cleaner_ = 0;
  int cleaner_pipe_ = -1;
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
