// The built daemon reads its files again: all of them or, when something is wrong, none.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <asio/ip/udp.hpp>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>

#include "agent/slpd_server/program.h"
#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using std::chrono::seconds;
using support::SlpdProcess;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;

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

// One with services of a registration file, and one of a program.
class ProgramReload : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(slpd_.Running()) << slpd_.Log();
    const asio::ip::udp::endpoint where(asio::ip::make_address("127.0.0.1"), slpd_.port());
    ASSERT_EQ(Register(where, "service:printer:lpr://mine", 1000), Error::kOk);
    before_ = Printers(slpd_);
    ASSERT_EQ(before_.size(), 3U);
  }

  // A reload that changes nothing, for this reason.
  void ExpectRefused(const std::string& reason) {
    const std::size_t said = slpd_.Log().size();
    slpd_.Reload(SIGHUP);
    const std::string log = slpd_.Log().substr(said);
    EXPECT_THAT(log, HasSubstr(" problem " + reason));
    EXPECT_THAT(log, EndsWith(" problem slpd: not reloaded, all stays as it was\n"));
    EXPECT_EQ(Printers(slpd_), before_) << reason;
  }

  // What --check says of the same files.
  std::string Check() {
    std::ifstream configuration(slpd_.configuration_file());
    std::ifstream registrations(slpd_.registration_file());
    using Content = std::istreambuf_iterator<char>;
    SlpdProcess check({.configuration = {Content(configuration), Content()},
                       .registrations = {Content(registrations), Content()},
                       .arguments = {"--check"}});
    EXPECT_EQ(check.Wait(seconds(10)), 1);
    return check.Log();
  }

  void ReplaceRegistrationsByLink(const std::string& target) {
    std::filesystem::remove_all(slpd_.registration_file());
    std::filesystem::create_symlink(target, slpd_.registration_file());
  }

  SlpdProcess slpd_{{.registrations = kTwoServices}};
  std::vector<std::string> before_;
};

TEST_F(ProgramReload, ARegistrationFileThatCannotBeReadIsRefused) {
  const TemporaryFolder folder;
  // A folder, nothing, and what opens and fails like a bad disk when it is read: nothing lies at address 0.
  for (const std::string& target : {folder.File(""), folder.File("missing"), std::string("/proc/self/mem")}) {
    ReplaceRegistrationsByLink(target);
    ExpectRefused(slpd_.registration_file() + ": cannot be read");
  }
  std::filesystem::remove(slpd_.registration_file());
  slpd_.WriteRegistrations("service:printer:lpr://three,en,65535\n");
  slpd_.Reload(SIGHUP);
  EXPECT_EQ(Printers(slpd_),
            (std::vector<std::string>{"service:printer:lpr://mine", "service:printer:lpr://three"}));
}

TEST_F(ProgramReload, AServiceThatStandsTwiceInTheFileIsRefused) {
  slpd_.WriteRegistrations(
      "service:printer:lpr://three,en,65535\n\nservice:printer:lpr://three,EN,9\nlocation=there\n");
  ExpectRefused(slpd_.registration_file() + ":3: registered twice: \"service:printer:lpr://three\"\n");
  EXPECT_THAT(Check(), HasSubstr(":3: registered twice: "));
}

TEST_F(ProgramReload, AFileForWhichThereIsNoRoomIsRefused) {
  std::string registrations;
  for (int i = 0; i <= 64; ++i) {
    const std::string language{static_cast<char>('a' + i / 26), static_cast<char>('a' + i % 26)};
    registrations += "service:printer:lpr://three," + language + ",9\n\n";
  }
  slpd_.WriteRegistrations(registrations);
  ExpectRefused(slpd_.registration_file() + ":129: no room for it in the registry\n");
  EXPECT_THAT(Check(), HasSubstr(":129: no room for it in the registry\n"));
}

TEST_F(ProgramReload, AddressesThatAreNoneAreRefused) {
  slpd_.WriteConfiguration("net.slp.broadcastAddr = nonsense\n");
  ExpectRefused(slpd_.configuration_file() +
                ":3: net.slp.broadcastAddr must be an IPv4 address, not \"nonsense\"\n");
  EXPECT_THAT(Check(), HasSubstr(": net.slp.broadcastAddr must be "));
  slpd_.WriteConfiguration("net.slp.DAAddresses = ::::,1.2.3.4.5\n");
  ExpectRefused(slpd_.configuration_file() +
                ":3: net.slp.DAAddresses must be addresses or names of hosts separated by commas, not "
                "\"::::,1.2.3.4.5\"\n");
  EXPECT_THAT(Check(), HasSubstr(": net.slp.DAAddresses must be "));
}

TEST_F(ProgramReload, ALineThatSetsNothingIsRefused) {
  slpd_.WriteConfiguration("# as it should be\n\nnet.slp.locale =\nnet.slp.useScopes more\n");
  ExpectRefused(slpd_.configuration_file() + ":6: neither a comment nor \"key = value\"\n");
  EXPECT_THAT(Check(), HasSubstr(":8: neither a comment nor \"key = value\"\n"));
}

TEST_F(ProgramReload, RandomBytesAreRefused) {
  std::mt19937 random(7);
  for (int round = 0; round < 4; ++round) {
    std::string bytes(4096, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random() & 0xFFU);
    }
    slpd_.WriteConfiguration(bytes);
    ExpectRefused(slpd_.configuration_file() + ":");
  }
}

TEST_F(ProgramReload, WhatBecameOfItIsToldBehindAnyNumberOfProblems) {
  std::string lines;
  for (int i = 0; i < 1000; ++i) {
    lines += "nothing\n";
  }
  slpd_.WriteConfiguration(lines);
  ExpectRefused("980 more problems in the configuration; slpd --check tells all of them\n");
}

TEST(Program, WhatIsWrongInTheConfigurationIsToldAtTheStartAndTheRestIsUsed) {
  SlpdProcess slpd({.configuration = "net.slp.DAAddresses = ::::,127.0.0.9\n"
                                     "net.slp.broadcastAddr = nonsense\n"
                                     "this sets nothing\n"
                                     "net.slp.useScopes = zdrest\n"});
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_THAT(
      slpd.Log(),
      AllOf(HasSubstr(":3: net.slp.DAAddresses must be "), HasSubstr(":4: net.slp.broadcastAddr must be "),
            HasSubstr(":5: neither a comment nor \"key = value\"\n"), HasSubstr(", scopes zdrest\n")));
}

}  // namespace
}  // namespace slp
