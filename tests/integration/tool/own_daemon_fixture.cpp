#include "integration/tool/own_daemon_fixture.h"

#include "integration/tool/tool_fixture.h"
#include "support/free_port.h"

namespace kelsd::integration {

void OwnDaemonTest::SetUp() {
  port_ = slp::support::FreePort();
  folder_.Write("slp.conf", "# of a test\nnet.slp.port = " + std::to_string(port_) +
                                "\nnet.slp.interfaces = 127.0.0.1\nnet.slp.appendLog = false\n");
}

void OwnDaemonTest::TearDown() {
  EXPECT_EQ(RunTool({"slpd", "stop"}).status, 0);
  EXPECT_EQ(RunTool({"slpd", "status"}).status, 1);
}

nlohmann::json OwnDaemonTest::RunForJson(std::vector<std::string> arguments) {
  arguments.emplace_back("--json");
  const support::ProgramRun run = RunTool(arguments);
  EXPECT_EQ(run.error, "");
  return nlohmann::json::parse(run.output, nullptr, false);
}

std::vector<std::string> OwnDaemonTest::Found(const std::string& type, const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"find", type, "--address", "127.0.0.1"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const nlohmann::json answer = RunForJson(arguments);
  std::vector<std::string> urls;
  for (const nlohmann::json& service : answer["services"]) {
    urls.push_back(service["url"]);
  }
  return urls;
}

std::optional<unsigned long> OwnDaemonTest::DaemonPid() const {
  const unsigned long process = host_.ProcessId();
  return process != 0 ? std::optional(process) : std::nullopt;
}

}  // namespace kelsd::integration
