// The built tool against a daemon on loopback.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/run_program/run_program.h"
#include "support/slpd_process/slpd_process.h"

namespace kelsd::integration {

/// The tool's path and these arguments.
std::vector<std::string> ToolCommand(const std::vector<std::string>& arguments);

/// Runs the tool with these arguments and nothing else.
support::ProgramRun RunTool(const std::vector<std::string>& arguments);

class ToolTest : public testing::Test {
 protected:
  /// Starts the daemon with the family's services.
  void SetUp() override;

  /// Runs the tool with the daemon's configuration file.
  support::ProgramRun Run(std::vector<std::string> arguments) const;
  /// The same with --json; the parsed output.
  nlohmann::json RunForJson(std::vector<std::string> arguments) const;

  std::unique_ptr<slp::support::SlpdProcess> daemon_;
};

}  // namespace kelsd::integration
