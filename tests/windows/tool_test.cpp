// The tool drives the real service.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "support/free_port.h"
#include "support/host_daemon/host_daemon.h"
#include "support/run_program/run_program.h"

namespace kelsd {
namespace {

using support::ProgramRun;
using testing::HasSubstr;
using testing::StartsWith;

class ToolDrivesService : public testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(daemon_.File("slp.conf"))
        << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << slp::support::FreePort() << "\n";
  }

  static ProgramRun Tool(const std::string& verb) {
    return support::RunProgram({KELSD_TOOL_PROGRAM, "slpd", verb});
  }

  const support::HostDaemon daemon_;
};

TEST_F(ToolDrivesService, FromStartToStop) {
  struct Row {
    const char* verb;
    int status;
    const char* output;
  };
  const Row rows[] = {
      {"status", 1, "slpd is not running.\n"}, {"stop", 0, "slpd is not running.\n"},
      {"start", 0, "slpd is running.\n"},      {"status", 0, "slpd is running.\n"},
      {"restart", 0, "slpd is running.\n"},    {"stop", 0, "slpd is not running.\n"},
      {"restart", 0, "slpd is running.\n"},    {"stop", 0, "slpd is not running.\n"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = Tool(row.verb);
    EXPECT_EQ(run.status, row.status) << row.verb << ": " << run.error;
    EXPECT_EQ(run.output, row.output) << row.verb;
  }
  EXPECT_EQ(daemon_.Starts(), 3);
}

TEST_F(ToolDrivesService, SaysThatItRunsAlready) {
  ASSERT_EQ(Tool("start").status, 0);
  const ProgramRun run = Tool("start");
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.error, StartsWith("kelsd: "));
  EXPECT_THAT(run.error, HasSubstr("Code: 32."));
}

}  // namespace
}  // namespace kelsd
