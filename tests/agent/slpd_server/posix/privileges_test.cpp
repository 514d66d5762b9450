// Which rights the built daemon gives up, and that it does its work without them.
#include "slpd/server/privileges.h"

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <map>
#include <sstream>

#include "agent/slpd_server/program.h"
#include "agent/slpd_server/temporary_folder.h"
#include "support/wait_until.h"
#include "support/without_privileges.h"

namespace slp {
namespace {

using kelsd::support::WithoutPrivileges;
using std::chrono::seconds;
using support::SlpdOptions;
using support::SlpdProcess;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// As the kernel counts them.
constexpr std::uint64_t kBindLowPorts = 1U << 10U;
constexpr std::uint64_t kIgnorePermissions = 1U << 1U;

using Lines = std::map<std::string, std::string>;

// What the kernel says about the rights of a process; blanks between numbers are one each.
Lines RightsOf(const std::string& process) {
  std::ifstream file("/proc/" + process + "/status");
  Lines lines;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    std::string text;
    for (std::string word; words >> word;) {
      text += (text.empty() ? "" : " ") + word;
    }
    if (name == "Uid:" || name == "Gid:" || name == "Groups:" || name == "NoNewPrivs:" ||
        name.compare(0, 3, "Cap") == 0) {
      lines[name] = text;
    }
  }
  return lines;
}

std::string FourTimes(unsigned int id) {
  const std::string text = std::to_string(id);
  return text + " " + text + " " + text + " " + text;
}

// Those of `wanted` that this process has, and so could be kept.
std::string Held(std::uint64_t wanted) {
  std::ostringstream text;
  text << std::hex << std::setfill('0') << std::setw(16)
       << (std::stoull(RightsOf("self").at("CapPrm:"), nullptr, 16) & wanted);
  return text.str();
}

Lines Rights(unsigned int user, unsigned int group, std::uint64_t kept) {
  const std::string none(16, '0');
  return {{"Uid:", FourTimes(user)}, {"Gid:", FourTimes(group)}, {"Groups:", ""},
          {"NoNewPrivs:", "1"},      {"CapInh:", none},          {"CapPrm:", Held(kept)},
          {"CapEff:", Held(kept)},   {"CapBnd:", none},          {"CapAmb:", none}};
}

// The folder of a daemon that becomes another user, which may enter it.
class OpenFolder : public TemporaryFolder {
 public:
  OpenFolder() {
    std::filesystem::permissions(
        File(""), std::filesystem::perms::owner_all | std::filesystem::perms::group_read |
                      std::filesystem::perms::group_exec | std::filesystem::perms::others_read |
                      std::filesystem::perms::others_exec);
  }

  void Hide(const std::string& name) const {
    std::filesystem::permissions(File(name),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  }
};

class PrivilegesTest : public testing::Test {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) {
      GTEST_SKIP() << "only the administrator can become another user";
    }
    // The leak check attaches to its process, which one that has changed its user does not permit.
    const char* const given = ::getenv("ASAN_OPTIONS");
    ::setenv("ASAN_OPTIONS", ((given != nullptr ? given + std::string(":") : "") + "detect_leaks=0").c_str(),
             1);
    const passwd* const nobody = ::getpwnam("nobody");
    ASSERT_NE(nobody, nullptr);
    user_ = nobody->pw_uid;
    group_ = nobody->pw_gid;
    group_name_ = ::getgrgid(group_)->gr_name;
  }

  SlpdOptions AsNobody(std::vector<std::string> further = {}) const {
    further.insert(further.begin(), {"--user", "nobody"});
    return {.registrations = kTwoServices, .arguments = further, .folder = folder_.File("")};
  }

  std::string MayNotRead(const std::string& file) const {
    return "problem user nobody may not read " + file +
           ", so slpd cannot reload it: let its group read it and enter its folders (chgrp " + group_name_ +
           " " + file + "; chmod g+r " + file + ")\n";
  }

  // Waits until the log file, which is not where SlpdProcess looks, tells of a reload.
  bool LogComesToHold(const std::string& file, const std::string& text) const {
    return kelsd::support::WaitUntil([&] { return folder_.Read(file).find(text) != std::string::npos; },
                                     seconds(20));
  }

  OpenFolder folder_;
  uid_t user_ = 0;
  gid_t group_ = 0;
  std::string group_name_;
};

TEST_F(PrivilegesTest, TheNamedUserMayOnlyBindLowPorts) {
  SlpdProcess slpd(AsNobody());
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_EQ(RightsOf(std::to_string(slpd.process_id())), Rights(user_, group_, kBindLowPorts));
  EXPECT_THAT(slpd.Log(), HasSubstr("state slpd: runs as user nobody, group " + group_name_ +
                                    " from here on, which may bind ports below 1024\n"));
  EXPECT_THAT(slpd.Log(), Not(HasSubstr(" problem ")));
}

TEST_F(PrivilegesTest, TheNamedGroupTakesThePlaceOfTheUsersOwn) {
  const group* const daemon = ::getgrnam("daemon");
  ASSERT_NE(daemon, nullptr);
  const gid_t daemon_id = daemon->gr_gid;
  SlpdOptions options = AsNobody();
  options.arguments[1] = "nobody:daemon";
  SlpdProcess slpd(options);
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_EQ(RightsOf(std::to_string(slpd.process_id())), Rights(user_, daemon_id, kBindLowPorts));
}

TEST_F(PrivilegesTest, TheAdministratorKeepsFilesAndIsToldOfTheOption) {
  SlpdProcess slpd;
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_EQ(RightsOf(std::to_string(slpd.process_id())), [] {
    Lines expected = Rights(0, 0, kBindLowPorts | kIgnorePermissions);
    expected["Gid:"] = RightsOf("self")["Gid:"];
    expected["Groups:"] = RightsOf("self")["Groups:"];
    return expected;
  }());
  EXPECT_THAT(slpd.Log(), HasSubstr("state slpd: runs as the administrator; with --user NAME it becomes that "
                                    "user once it has its sockets\n"));
}

TEST_F(PrivilegesTest, ServesReloadsAndStopsAsTheNamedUser) {
  SlpdProcess slpd(AsNobody());
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  const asio::ip::udp::endpoint where(asio::ip::make_address("127.0.0.1"), slpd.port());
  ASSERT_EQ(Register(where, "service:printer:lpr://mine", 1000), Error::kOk);
  EXPECT_EQ(Printers(slpd),
            (std::vector<std::string>{"service:printer:lpr://mine", "service:printer:lpr://one",
                                      "service:printer:lpr://two"}));

  slpd.WriteConfiguration("net.slp.useScopes = DEFAULT,more\n");
  slpd.WriteRegistrations("service:printer:lpr://three,en,65535\n");
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), HasSubstr(", scopes DEFAULT,more\n"));
  EXPECT_EQ(Printers(slpd),
            (std::vector<std::string>{"service:printer:lpr://mine", "service:printer:lpr://three"}));
  EXPECT_EQ(slpd.Stop(), 0);
  EXPECT_EQ(folder_.Read("slpd.pid"), "");
  EXPECT_THAT(slpd.Log(), EndsWith("state slpd: ended\n"));
}

TEST_F(PrivilegesTest, AServiceGoesWithItsProcessOfAnotherUser) {
  SlpdProcess slpd(AsNobody());
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  SlpdProcess bound;  // any process of the administrator will do
  ASSERT_TRUE(bound.Running()) << bound.Log();
  const asio::ip::udp::endpoint where(asio::ip::make_address("127.0.0.1"), slpd.port());
  slpd.WriteRegistrations("");
  slpd.Reload(SIGHUP);
  ASSERT_EQ(
      Register(where, "service:printer:lpr://bound", 1000, static_cast<std::uint32_t>(bound.process_id())),
      Error::kOk);
  EXPECT_EQ(Printers(slpd), std::vector<std::string>{"service:printer:lpr://bound"});
  bound.Stop();
  EXPECT_TRUE(kelsd::support::WaitUntil([&] { return Printers(slpd).empty(); }, seconds(20)));
}

TEST_F(PrivilegesTest, WhatTheUserMayNotReadIsToldAtTheStartAndRefusedAtTheReload) {
  folder_.Write("slp.conf", "");
  folder_.Write("slp.reg", "");
  folder_.Hide("slp.conf");
  folder_.Hide("slp.reg");
  SlpdProcess slpd(AsNobody());
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_THAT(slpd.Log(), AllOf(HasSubstr(MayNotRead(slpd.configuration_file())),
                                HasSubstr(MayNotRead(slpd.registration_file()))));
  const std::vector<std::string> before = Printers(slpd);
  EXPECT_THAT(before, Not(IsEmpty()));
  slpd.WriteRegistrations("");
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), AllOf(HasSubstr("problem " + slpd.configuration_file() + ": cannot be opened\n"),
                                EndsWith("problem slpd: not reloaded, all stays as it was\n")));

  std::filesystem::permissions(slpd.configuration_file(), std::filesystem::perms::others_read,
                               std::filesystem::perm_options::add);
  slpd.Reload(SIGHUP);
  EXPECT_THAT(slpd.Log(), AllOf(HasSubstr("problem " + slpd.registration_file() + ": cannot be read\n"),
                                EndsWith("problem slpd: not reloaded, all stays as it was\n")));
  EXPECT_EQ(Printers(slpd), before);

  std::filesystem::permissions(slpd.registration_file(), std::filesystem::perms::others_read,
                               std::filesystem::perm_options::add);
  slpd.Reload(SIGHUP);
  EXPECT_THAT(Printers(slpd), IsEmpty());
}

TEST_F(PrivilegesTest, TheLogGoesToTheUserAndOnInTheFileThatItsRotationCreates) {
  SlpdProcess slpd(AsNobody({"--log", folder_.File("log")}));
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  struct stat status {};
  ASSERT_EQ(::stat(folder_.File("log").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, user_);
  EXPECT_EQ(status.st_gid, group_);

  std::filesystem::rename(folder_.File("log"), folder_.File("log.1"));
  folder_.Write("log", "");
  ASSERT_EQ(::chown(folder_.File("log").c_str(), user_, group_), 0);
  slpd.Send(SIGHUP);
  EXPECT_TRUE(LogComesToHold("log", "state slpd: reloaded, "));
  EXPECT_THAT(folder_.Read("log.1"), Not(HasSubstr("reloaded")));
}

TEST_F(PrivilegesTest, ALogThatTheUserMayNotCreateGoesOnInTheOldFileAndSaysWhatToDo) {
  SlpdProcess slpd(AsNobody({"--log", folder_.File("log")}));
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  std::filesystem::rename(folder_.File("log"), folder_.File("log.1"));
  slpd.Send(SIGHUP);
  EXPECT_TRUE(LogComesToHold("log.1", "state slpd: reloaded, "));
  EXPECT_FALSE(std::filesystem::exists(folder_.File("log")));
  EXPECT_THAT(
      folder_.Read("log.1"),
      AllOf(HasSubstr("problem cannot open the log file " + folder_.File("log") + ": Permission denied\n"),
            HasSubstr("problem user nobody may not write " + folder_.File("log") +
                      ", so slpd cannot open it again: let the log's rotation create it for this user "
                      "(logrotate: create 0640 nobody " +
                      group_name_ + ")\n")));
}

TEST_F(PrivilegesTest, ALogThatIsSomebodyElsesIsNotGivenAway) {
  const passwd* const somebody = ::getpwnam("daemon");
  ASSERT_NE(somebody, nullptr);
  const uid_t owner = somebody->pw_uid;
  const std::string log = folder_.Write("log", "");
  folder_.Hide("log");
  ASSERT_EQ(::chown(log.c_str(), owner, somebody->pw_gid), 0);
  SlpdProcess slpd(AsNobody({"--log", log}));
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  struct stat status {};
  ASSERT_EQ(::stat(log.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, owner);
  EXPECT_THAT(folder_.Read("log"),
              HasSubstr("problem user nobody may not write " + folder_.File("log") + ","));
}

TEST_F(PrivilegesTest, AnUnknownUserOrGroupKeepsItFromStarting) {
  struct UnknownUser {
    std::string user;
    std::string last_words;
  };
  const UnknownUser rows[] = {
      {"no-such-user", "slpd: --user: there is no user no-such-user\n"},
      {"no-such-user:daemon", "slpd: --user: there is no user no-such-user\n"},
      {"nobody:no-such-group", "slpd: --user: there is no group no-such-group\n"},
  };
  for (const UnknownUser& row : rows) {
    SlpdOptions options = AsNobody();
    options.arguments[1] = row.user;
    SlpdProcess slpd(options);
    EXPECT_EQ(slpd.Wait(seconds(10)), 1) << row.user;
    EXPECT_EQ(slpd.Log(), row.last_words);
    EXPECT_FALSE(std::filesystem::exists(slpd.pid_file()));

    options.arguments.emplace_back("--check");
    SlpdProcess check(options);
    EXPECT_EQ(check.Wait(seconds(10)), 1) << row.user;
    EXPECT_EQ("slpd: " + check.Log(), row.last_words);
  }
}

TEST_F(PrivilegesTest, OnlyTheAdministratorBecomesSomebodyElse) {
  const WithoutPrivileges nobody;
  std::string problem;
  EXPECT_TRUE(Privileges().Prepare("", problem));
  EXPECT_TRUE(Privileges().Prepare("nobody", problem));
  EXPECT_EQ(problem, "");
  EXPECT_FALSE(Privileges().Prepare("daemon", problem));
  EXPECT_EQ(
      problem,
      "--user: only the administrator can start slpd as user daemon, group daemon; this is user nobody, "
      "group root: start it as the administrator, or leave --user out");
  EXPECT_FALSE(Privileges().Prepare("nobody:daemon", problem));
  EXPECT_EQ(
      problem,
      "--user: only the administrator can start slpd as user nobody, group daemon; this is user nobody, "
      "group root: start it as the administrator, or leave --user out");
}

}  // namespace
}  // namespace slp
