// The built tool on a host of its own, so to speak: a configuration file and a port that nobody else uses,
// and the host's service, which the tool itself starts.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "support/fake_platform/temporary_folder.h"
#include "support/host_daemon/host_daemon.h"
#include "support/run_program/run_program.h"

namespace kelsd::integration {

class OwnDaemonTest : public testing::Test {
 protected:
  /// Writes the configuration file. No daemon runs yet.
  void SetUp() override;
  /// Ends the daemon.
  void TearDown() override;

  /// The tool's output as JSON.
  static nlohmann::json RunForJson(std::vector<std::string> arguments);
  /// The URLs of the type's services, by unicast.
  static std::vector<std::string> Found(const std::string& type, const std::vector<std::string>& more = {});

  /// The process that serves, none when none does.
  std::optional<unsigned long> DaemonPid() const;

  std::string configuration_file() const { return folder_.Path("slp.conf"); }

  support::HostDaemon host_;
  const Folder folder_{host_.folder()};
  std::uint16_t port_ = 0;
};

}  // namespace kelsd::integration
