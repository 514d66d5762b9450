// The built daemon as a process: command line, files, signals, exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <chrono>
#include <csignal>

#include "agent/slpd_server/program.h"
#include "agent/slpd_server/temporary_folder.h"
#include "support/machine_delay.h"

namespace slp {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::SlpdProcess;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string FileContent(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Program, ServesFromThePidFileOnAndEndsCleanlyOnSigterm) {
  const auto before = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  SlpdProcess slpd({.registrations = kTwoServices});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  int process_id = 0;
  long long start = 0;
  std::istringstream(FileContent(slpd.pid_file())) >> process_id >> start;
  EXPECT_EQ(process_id, slpd.process_id());
  EXPECT_GE(start, before);
  EXPECT_LE(start, std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
  EXPECT_EQ(Printers(slpd),
            (std::vector<std::string>{"service:printer:lpr://one", "service:printer:lpr://two"}));
  EXPECT_THAT(slpd.Log(), HasSubstr("state slpd: ready on 127.0.0.1:" + std::to_string(slpd.port())));
  EXPECT_EQ(slpd.Stop(), 0);
  EXPECT_EQ(FileContent(slpd.pid_file()), "");
  EXPECT_THAT(slpd.Log(), EndsWith("state slpd: ended\n"));
}

TEST(Program, EndsCleanlyOnSigint) {
  SlpdProcess slpd;
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  slpd.Send(SIGINT);
  EXPECT_EQ(slpd.Wait(seconds(10)), 0);
}

TEST(Program, ASecondOneOnTheSamePidFileSaysThatOneRuns) {
  const TemporaryFolder folder;
  SlpdProcess first({.folder = folder.File("")});
  ASSERT_TRUE(first.Running()) << first.Log();
  const TemporaryFolder other;
  SlpdProcess second({.arguments = {"--pidfile", first.pid_file()}, .folder = other.File("")});
  EXPECT_EQ(second.Wait(seconds(10)), 2) << "an option given twice is a wrong command line";

  SlpdProcess third({.folder = folder.File("")});
  EXPECT_EQ(third.Wait(seconds(10)), 3);
  EXPECT_EQ(third.Log(), "slpd: another slpd runs already: it holds the pid file " + first.pid_file() + "\n");
  EXPECT_TRUE(first.Running());
}

TEST(Program, ATakenPortIsTheLastWord) {
  SlpdProcess first;
  ASSERT_TRUE(first.Running()) << first.Log();
  SlpdProcess second({.port = first.port()});
  EXPECT_EQ(second.Wait(seconds(10)), 1);
  const std::string endpoint = "127.0.0.1:" + std::to_string(first.port());
  const asio::error_code in_use = asio::error::address_in_use;
  EXPECT_THAT(second.Log(),
              AllOf(HasSubstr("slpd: cannot serve UDP " + endpoint + " ("),
                    EndsWith("): " + in_use.message() +
                             "; another SLP agent may be running: stop it, or choose another port with "
                             "net.slp.port\n")));
  EXPECT_EQ(FileContent(second.pid_file()), "");
}

TEST(Program, TellsFileAndLineOfABadConfigurationLineAndGoesOnWithTheDefault) {
  SlpdProcess slpd({.configuration = "net.slp.MTU = many\nnet.slp.useScopes = zdrest\n"});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_THAT(slpd.Log(), AllOf(HasSubstr("problem " + slpd.configuration_file() +
                                          ":3: net.slp.MTU must be a whole number "),
                                HasSubstr(", not \"many\"\n")));
  EXPECT_THAT(slpd.Log(), HasSubstr(", scopes zdrest\n"));
}

TEST(Program, AServiceGoesWithItsProcess) {
  SlpdProcess slpd;
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  SlpdProcess bound;  // any process will do
  const asio::ip::udp::endpoint where(asio::ip::make_address("127.0.0.1"), slpd.port());
  ASSERT_EQ(
      Register(where, "service:printer:lpr://bound", 1000, static_cast<std::uint32_t>(bound.process_id())),
      Error::kOk);
  EXPECT_EQ(Printers(slpd), std::vector<std::string>{"service:printer:lpr://bound"});
  bound.Stop();
  kelsd::support::MachineDelay delay;
  const auto stopped = std::chrono::steady_clock::now();
  while (!Printers(slpd).empty() && std::chrono::steady_clock::now() < stopped + seconds(10)) {
  }
  // At once, and not with the next look at the processes that the system doesn't tell of: one a second.
  EXPECT_LT(std::chrono::steady_clock::now() - stopped, milliseconds(500) + delay.Allowance());
  EXPECT_EQ(Printers(slpd), std::vector<std::string>());
}

TEST(Program, CheckTellsEveryProblemAndStartsNothing) {
  const TemporaryFolder folder;
  SlpdProcess bad({.configuration = "net.slp.MTU = many\n",
                   .registrations = "this is no registration\n",
                   .arguments = {"--check"},
                   .folder = folder.File("")});
  EXPECT_EQ(bad.Wait(seconds(10)), 1);
  EXPECT_THAT(bad.Log(), AllOf(StartsWith(bad.configuration_file() + ":3: "),
                               HasSubstr("\n" + bad.registration_file() + ":1: ")));
  EXPECT_FALSE(std::filesystem::exists(bad.pid_file()));

  SlpdProcess good({.registrations = kTwoServices, .arguments = {"--check"}});
  EXPECT_EQ(good.Wait(seconds(10)), 0);
  EXPECT_EQ(good.Log(), "");
}

TEST(Program, AWrongCommandLineEndsWithTwo) {
  SlpdProcess slpd({.arguments = {"--property", "net.slp.MTU=many"}});
  EXPECT_EQ(slpd.Wait(seconds(10)), 2);
  EXPECT_THAT(slpd.Log(), HasSubstr("slpd: --property: net.slp.MTU must be "));
}

}  // namespace
}  // namespace slp
