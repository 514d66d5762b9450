// The built daemon as a process: what a hang-up does, where it logs, and that no service manager is there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <chrono>

#include "agent/slpd_server/program.h"
#include "agent/slpd_server/temporary_folder.h"
#include "support/wait_until.h"

namespace slp {
namespace {

using std::chrono::seconds;
using support::SlpdProcess;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Whether a file, which is not where SlpdProcess looks for the log, comes to hold a text.
bool ComesToHold(const TemporaryFolder& folder, const std::string& file, const std::string& text) {
  return kelsd::support::WaitUntil([&] { return folder.Read(file).find(text) != std::string::npos; },
                                   seconds(10));
}

TEST(ProgramSignals, ReloadFollowsALogFileThatWasMovedAway) {
  const TemporaryFolder folder;
  SlpdProcess slpd({.arguments = {"--log", folder.File("log")}});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_THAT(folder.Read("log"), HasSubstr("slpd: ready on "));
  std::filesystem::rename(folder.File("log"), folder.File("log.1"));
  slpd.Send(SIGHUP);
  EXPECT_TRUE(ComesToHold(folder, "log", "slpd: reloaded"));
  EXPECT_THAT(folder.Read("log.1"), Not(HasSubstr("reloaded")));
  EXPECT_EQ(slpd.Log(), "");
}

TEST(ProgramLog, OneThatWasPreparedEndsTheStart) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0666), 0);
  folder.Write("target", "precious");
  std::filesystem::create_hard_link(folder.File("target"), folder.File("link"));
  for (const std::string name : {"pipe", "link"}) {
    SlpdProcess slpd({.arguments = {"--log", folder.File(name), "--property", "net.slp.appendLog=false"}});
    EXPECT_EQ(slpd.Wait(seconds(10)), 1) << name;
    EXPECT_THAT(slpd.Log(), StartsWith("slpd: cannot open the log file " + folder.File(name) + ": it "));
  }
  EXPECT_EQ(folder.Read("target"), "precious");
}

TEST(ProgramLog, OneThatIsPreparedForTheReloadLeavesItInTheOldFile) {
  const TemporaryFolder folder;
  SlpdProcess slpd({.arguments = {"--log", folder.File("log")}});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  folder.Write("target", "precious");
  std::filesystem::rename(folder.File("log"), folder.File("log.1"));
  std::filesystem::create_hard_link(folder.File("target"), folder.File("log"));
  slpd.Send(SIGHUP);
  EXPECT_TRUE(ComesToHold(folder, "log.1", "reloaded"));
  EXPECT_THAT(folder.Read("log.1"), HasSubstr("problem cannot open the log file " + folder.File("log") +
                                              ": it has a second name (a hard link), "));
  EXPECT_EQ(folder.Read("target"), "precious");

  std::filesystem::remove(folder.File("log"));
  ASSERT_EQ(::mkfifo(folder.File("log").c_str(), 0666), 0);
  slpd.Send(SIGHUP);
  EXPECT_TRUE(ComesToHold(folder, "log.1", ": it is no regular file: "));
  EXPECT_EQ(slpd.Stop(), 0);
  EXPECT_THAT(folder.Read("log.1"), EndsWith("state slpd: ended\n"));
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
