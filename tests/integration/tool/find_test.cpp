#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "integration/library/library_fixture.h"
#include "integration/tool/tool_fixture.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kServer1 = "service:zdrest.tamro:http://127.0.0.1:8080";
constexpr const char* kServer2 = "service:zdrest.tamro:http://127.0.0.1:8090";

class ToolFind : public ToolTest {
 protected:
  std::vector<std::string> Urls(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "find");
    arguments.insert(arguments.end(), {"--address", "127.0.0.1"});
    std::vector<std::string> urls;
    const json answer = RunForJson(arguments);
    for (const json& service : answer["services"]) {
      urls.push_back(service["url"]);
    }
    return urls;
  }
};

TEST_F(ToolFind, PrintsATableForPeople) {
  const ProgramRun run = Run({"find", "zdrest"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.output,
            "SERVICE URL                                 HOST       PORT  LIFETIME\n"
            "service:zdrest.tamro:http://127.0.0.1:8080  127.0.0.1  8080   65535 s\n"
            "service:zdrest.tamro:http://127.0.0.1:8090  127.0.0.1  8090   65535 s\n");
}

TEST_F(ToolFind, PrintsJsonForPrograms) {
  const json expected = {{"url", kServer1},     {"lifetime", 65535}, {"type", "service:zdrest.tamro:http"},
                         {"host", "127.0.0.1"}, {"port", 8080},      {"netFamily", ""},
                         {"servicePart", ""}};
  EXPECT_EQ(RunForJson({"find", "zdrest", "--address", "127.0.0.1", "--ip", "10.0.0.2"}),
            (json{{"services", {expected}}}));
}

TEST_F(ToolFind, KnowsTheFamilysTypesByShortNames) {
  const std::vector<std::string> terminal = {"service:terminal.tamro:http://127.0.0.1:8070"};
  const std::vector<std::string> render = {"service:servicehost.tamro:render://127.0.0.1:9000"};
  EXPECT_EQ(Urls({"terminal"}), terminal);
  EXPECT_EQ(Urls({"servicehost"}), render);
  EXPECT_EQ(Urls({"servicehost:render"}), render);
  EXPECT_EQ(Urls({"service:terminal.tamro:http", "--scope", "tamro"}), terminal);
  EXPECT_EQ(Urls({"servicehost", "--scope", "lab"}),
            (std::vector<std::string>{"service:servicehost.tamro:print://127.0.0.1:9001"}));
}

TEST_F(ToolFind, NarrowsByWhatTheServiceShallMatch) {
  const std::vector<std::string> first = {kServer1};
  const std::vector<std::string> second = {kServer2};
  EXPECT_EQ(Urls({"zdrest", "--filter", "(x-version=4.1)"}), second);
  EXPECT_EQ(Urls({"zdrest", "--ip", "10.0.0.2"}), first);
  EXPECT_EQ(Urls({"zdrest", "--ip", "10.0.0.2", "--server-name", "srv1"}), first);
  EXPECT_EQ(Urls({"zdrest", "--ip", "10.9.9.9", "--ip", "10.0.0.22", "--server-name", "srv2"}), second);
  EXPECT_EQ(Urls({"zdrest", "--ns", "ns1"}), first);
  EXPECT_EQ(Urls({"zdrest", "--ns", "ns2", "--server-name", "srv2"}), second);
  EXPECT_EQ(Urls({"zdrest", "--ns", "ns1", "--ns", "ns2", "--server-name", "srv2"}), second);
}

TEST_F(ToolFind, TakesTheTypeBehindEveryRepeatableOption) {
  const std::vector<std::string> first = {kServer1};
  EXPECT_EQ(Urls({"--scope", "tamro", "--ip", "10.0.0.2", "zdrest"}), first);
  EXPECT_EQ(Urls({"--ip", "10.0.0.2", "zdrest"}), first);
  EXPECT_EQ(Urls({"--ns", "ns1", "zdrest"}), first);
  EXPECT_EQ(Urls({"--ns", "ns1", "--interface", "127.0.0.1", "zdrest"}), first);
}

TEST_F(ToolFind, ExitsWith1WhenThereIsNothing) {
  const ProgramRun run = Run({"find", "zdrest", "--ns", "nowhere", "--address", "127.0.0.1"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.error, "No services found.\n");
  EXPECT_EQ(RunForJson({"find", "zdrest", "--ns", "nowhere", "--address", "127.0.0.1"}),
            (json{{"services", json::array()}}));
}

TEST_F(ToolFind, ExitsWith3AndAHintWhenTheSearchFails) {
  ASSERT_EQ(daemon_->Stop(), 0);
  const ProgramRun run = Run({"find", "zdrest", "--address", "127.0.0.1", "--timeout", "1252"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.output, "");
  EXPECT_THAT(run.error,
              StartsWith("kelsd: Unicast request timed out. Code: 13. kelsd::CKelSLPClientImpl::FindServices "
                         "SLPFindSrvs\nhint: Nobody answered at that address."));
}

TEST_F(ToolFind, AdvisesOnAScopeThatTheHostDoesNotServe) {
  const ProgramRun run = Run({"find", "zdrest", "--scope", "nowhere", "--address", "127.0.0.1"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(
      run.error,
      "kelsd: Unknown error. Code: 1. kelsd::CKelSLPClientImpl::FindServices SLPFindSrvs\n"
      "hint: The asked agent may serve other scopes only. Name one of its scopes with --scope, or add the "
      "scope to net.slp.useScopes there ('kelsd config get useScopes' shows those of this host).\n");
}

TEST_F(ToolFind, ExitsWith2OnATimeoutThatIsTooShort) {
  const ProgramRun run = Run({"find", "zdrest", "--timeout", "1251"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.error,
              HasSubstr("Invalid timeout value of 1251 provided (too small). The unicast maximum wait is "
                        "too small (must be at least 501): 500."));
}

TEST_F(ToolFind, SendsFromTheInterfaceGiven) {
  slp::support::SlpdOptions options;
  options.configuration = "net.slp.useScopes = TAMRO\nnet.slp.traceMsg = true\n";
  options.registrations = RegistrationFile(FamilyServices());
  daemon_ = std::make_unique<slp::support::SlpdProcess>(options);
  EXPECT_EQ(Run({"find", "terminal", "--interface", "127.0.0.1"}).status, 0);
  const std::string other_sender = "from 127.0.0.77 (multicast): SrvRqst";
  EXPECT_THAT(daemon_->Log(), Not(HasSubstr(other_sender)));
  // The host is configured for 127.0.0.1 alone.
  Run({"find", "terminal", "--interface", "127.0.0.77", "--timeout", "1252"});
  EXPECT_TRUE(daemon_->WaitForLog(other_sender)) << daemon_->Log();
}

}  // namespace
}  // namespace kelsd::integration
