// The built tool on a host of its own, so to speak: a configuration file, a pid file and a port that nobody
// else uses, and a daemon that the tool itself starts.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "support/fake_platform/temporary_folder.h"
#include "support/run_program/run_program.h"

namespace kelsd::integration {

class OwnDaemonTest : public testing::Test {
 protected:
  /// Writes the configuration file and names it, the daemon and its pid file in the environment. No daemon
  /// runs yet.
  void SetUp() override;
  /// Ends the daemon.
  void TearDown() override;

  /// The tool's output as JSON.
  static nlohmann::json RunForJson(std::vector<std::string> arguments);
  /// The URLs of the type's services, by unicast.
  static std::vector<std::string> Found(const std::string& type, const std::vector<std::string>& more = {});

  /// The process id in the pid file, none when there is none.
  std::optional<int> DaemonPid() const;

  std::string configuration_file() const { return folder_.Path("slp.conf"); }

  TemporaryFolder folder_;
  std::uint16_t port_ = 0;
};

}  // namespace kelsd::integration
