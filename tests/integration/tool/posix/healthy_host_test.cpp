// The doctor on a host on which all is well, the port included, which only a network of the test's own
// allows.
#include <gtest/gtest.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "integration/tool/tool_fixture.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::integration {
namespace {

enum ChildStatus : int { kDone = 0, kNoNamespace = 1, kNoLoopback = 2, kNoDaemon = 3 };

bool RaiseLoopback() {
  const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request{};
  std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
  request.ifr_flags = IFF_UP | IFF_MULTICAST;
  const bool raised = ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
  close(descriptor);
  return raised;
}

void Save(const TemporaryFolder& folder, const std::string& name, const support::ProgramRun& run) {
  folder.Write(name, std::to_string(run.status) + "\n" + run.output + run.error);
}

// Becomes a host of its own, with a daemon at the port that everybody has, and leaves what the doctor says.
ChildStatus BeAHost(const TemporaryFolder& folder) {
  const std::string user = std::to_string(getuid());
  if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
    return kNoNamespace;
  }
  // Its administrator, so that the programs that it starts may have the port.
  std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";
  if (!RaiseLoopback()) {
    return kNoLoopback;
  }
  if (RunTool({"slpd", "start"}).status != 0) {
    return kNoDaemon;
  }
  Save(folder, "doctor", RunTool({"doctor", "--timeout", "3000"}));
  Save(folder, "json", RunTool({"doctor", "--timeout", "3000", "--json"}));
  RunTool({"slpd", "stop"});
  return kDone;
}

TEST(ToolDoctorOnAHealthyHost, ExitsWith0) {
  const TemporaryFolder folder;
  const std::string file =
      folder.Write("slp.conf", "net.slp.interfaces = 127.0.0.1\nnet.slp.appendLog = false\n");
  setenv("OpenSLPConfig", file.c_str(), 1);
  setenv("KELSD_SLPD", KELSD_SLPD_PROGRAM, 1);
  setenv("KELSD_SLPD_PIDFILE", folder.Path("slpd.pid").c_str(), 1);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    _exit(BeAHost(folder));
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNoNamespace) {
    GTEST_SKIP() << "this system doesn't let the test make a network namespace";
  }
  ASSERT_EQ(WEXITSTATUS(status), kDone);
  EXPECT_EQ(folder.Read("doctor"),
            "0\n"
            "ok       library initialised\n"
            "ok       configuration file named: " +
                file + "\nok       configuration file found: " + file +
                "\nok       configuration file used\n"
                "ok       properties readable\n"
                "ok       settings as required\n"
                "ok       slpd running\n"
                "ok       slpd answers by unicast: service:service-agent://127.0.0.1\n"
                "ok       slpd answers by multicast: service:service-agent://127.0.0.1\n");
  const std::string answer = folder.Read("json");
  ASSERT_EQ(answer.substr(0, 2), "0\n");
  const nlohmann::json findings = nlohmann::json::parse(answer.substr(2))["findings"];
  ASSERT_EQ(findings.size(), 9U);
  EXPECT_EQ(findings[8], (nlohmann::json{{"check", "slpd answers by multicast"},
                                         {"ok", true},
                                         {"detail", "service:service-agent://127.0.0.1"},
                                         {"advice", ""}}));
}

}  // namespace
}  // namespace kelsd::integration
