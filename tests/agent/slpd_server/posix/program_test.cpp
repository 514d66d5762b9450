// The built daemon as a process: what a hang-up does, and that no service manager is there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <chrono>

#include "agent/slpd_server/program.h"
#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using std::chrono::seconds;
using support::SlpdProcess;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST(ProgramSignals, ReloadTakesNewScopesAndRegistrationsAndKeepsWhatProgramsRegistered) {
  SlpdProcess slpd({.registrations = kTwoServices});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  const asio::ip::udp::endpoint where(asio::ip::make_address("127.0.0.1"), slpd.port());
  ASSERT_EQ(Register(where, "service:printer:lpr://mine", 1000), Error::kOk);
  slpd.WriteConfiguration("net.slp.useScopes = DEFAULT,more\n");
  slpd.WriteRegistrations("service:printer:lpr://three,en,65535\n");
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), HasSubstr("state slpd: reloaded, serving 127.0.0.1:" + std::to_string(slpd.port()) +
                                    ", scopes DEFAULT,more\n"));
  EXPECT_EQ(Printers(slpd),
            (std::vector<std::string>{"service:printer:lpr://mine", "service:printer:lpr://three"}));
}

TEST(ProgramSignals, ABadFileAtReloadChangesNothingAndSaysWhy) {
  SlpdProcess slpd({.registrations = kTwoServices});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  const std::vector<std::string> before = Printers(slpd);

  slpd.WriteConfiguration("net.slp.useScopes = other\nnet.slp.MTU = 0x10\n");
  slpd.WriteRegistrations("");
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), ContainsRegex(slpd.configuration_file() + ":4: net\\.slp\\.MTU must be "));
  EXPECT_THAT(slpd.Log(), EndsWith("problem slpd: not reloaded, all stays as it was\n"));
  EXPECT_EQ(Printers(slpd), before);

  slpd.WriteConfiguration("");
  slpd.WriteRegistrations("service:printer:lpr://three,en,65535\n\nthis is no registration\n");
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), HasSubstr("problem " + slpd.registration_file() + ":3: "));
  EXPECT_EQ(Printers(slpd), before);

  slpd.WriteRegistrations("");
  slpd.Reload(SIGHUP);
  EXPECT_EQ(Printers(slpd), std::vector<std::string>());
}

TEST(ProgramSignals, ReloadFollowsALogFileThatWasMovedAway) {
  const TemporaryFolder folder;
  SlpdProcess slpd({.arguments = {"--log", folder.File("log")}});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_THAT(folder.Read("log"), HasSubstr("slpd: ready on "));
  std::filesystem::rename(folder.File("log"), folder.File("log.1"));
  slpd.Send(SIGHUP);
  const auto end = std::chrono::steady_clock::now() + seconds(10);
  while (folder.Read("log").find("reloaded") == std::string::npos && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(
        std::chrono::milliseconds(5));  // nothing else tells that the file was written
  }
  EXPECT_THAT(folder.Read("log"), HasSubstr("slpd: reloaded"));
  EXPECT_THAT(folder.Read("log.1"), Not(HasSubstr("reloaded")));
  EXPECT_EQ(slpd.Log(), "");
}

TEST(ProgramService, RefusesToBeAServiceWhereNoServiceManagerIs) {
  for (const char* const verb : {"install", "uninstall", "run"}) {
    SlpdProcess slpd({.arguments = {verb}});
    EXPECT_EQ(slpd.Wait(seconds(10)), 2);
    EXPECT_EQ(
        slpd.Log(),
        "slpd: install, uninstall and run are for Windows, where slpd is a service; here slpd without a "
        "verb is all that a process manager has to start\n");
  }
}

}  // namespace
}  // namespace slp
