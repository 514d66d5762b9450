#include "settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

using Problem = std::optional<std::string>;

std::vector<Assignment> Parsed(const std::vector<std::string>& texts) {
  std::vector<Assignment> assignments(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(ParseAssignment(texts[i], assignments[i]), Problem()) << texts[i];
  }
  return assignments;
}

TEST(Settings, KnowKeysWithAndWithoutPrefix) {
  EXPECT_EQ(FindProperty("net.slp.useScopes"), CKelSLPConfig::PROP_USESCOPES);
  EXPECT_EQ(FindProperty("useScopes"), CKelSLPConfig::PROP_USESCOPES);
  EXPECT_EQ(FindProperty("usescopes"), CKelSLPConfig::PROP_UNKNOWN);
  EXPECT_EQ(FindProperty(""), CKelSLPConfig::PROP_UNKNOWN);
}

TEST(Settings, SuggestTheKeyThatWasMeant) {
  EXPECT_EQ(UnknownKey("usescopes"),
            "there is no setting 'usescopes'; did you mean 'useScopes'? 'kelsd config show' lists them");
  EXPECT_EQ(
      UnknownKey("net.slp.usescope"),
      "there is no setting 'net.slp.usescope'; did you mean 'net.slp.useScopes'? 'kelsd config show' lists "
      "them");
  EXPECT_EQ(UnknownKey("colour"), "there is no setting 'colour'; 'kelsd config show' lists them");
}

TEST(Settings, AreEditableAsTheirRecordsAre) {
  std::size_t service = 0;
  std::size_t client = 0;
  std::size_t both = 0;
  for (const CKelSLPConfig::EProperty property : CKelSLPConfig::GetEProperty()) {
    service += IsServiceEditable(property) ? 1 : 0;
    client += IsClientEditable(property) ? 1 : 0;
    both += IsServiceEditable(property) && IsClientEditable(property) ? 1 : 0;
  }
  EXPECT_EQ(service, 20U);
  EXPECT_EQ(client, 12U);
  EXPECT_EQ(both, 7U);
}

TEST(Settings, SetEverySettingOfTheClient) {
  CKelSLPClientConfig config;
  EXPECT_EQ(Assign(config,
                   Parsed({"multicastTTL=9", "unicastMaximumWait=3000", "unicastTimeouts=300,600", "MTU=1000",
                           "broadcastAddr=10.0.0.255", "useDHCP=false", "interfaces=10.0.0.5,10.0.0.6",
                           "maxResults=20", "DADiscoveryMaximumWait=2000", "DADiscoveryTimeouts=200,400",
                           "multicastMaximumWait=2500", "multicastTimeouts=250,500"})),
            Problem());
  CKelSLPClientConfig expected;
  ASSERT_TRUE(expected.SetMulticastTTL(9).IsOk());
  ASSERT_TRUE(expected.SetUnicasttMaximumWaitAndTimeouts(3000, {300, 600}).IsOk());
  ASSERT_TRUE(expected.SetMTU(1000).IsOk());
  expected.SetBroadcastAddr("10.0.0.255");
  expected.SetUseDHCP(false);
  expected.SetInterfaces({"10.0.0.5", "10.0.0.6"});
  ASSERT_TRUE(expected.SetMaxResults(20).IsOk());
  ASSERT_TRUE(expected.SetDADiscoveryMaximumWaitAndTimeouts(2000, {200, 400}).IsOk());
  ASSERT_TRUE(expected.SetMulticastMaximumWaitAndTimeouts(2500, {250, 500}).IsOk());
  EXPECT_TRUE(config.EqualTo(expected));
}

TEST(Settings, TakeAWaitAndItsTimeoutsInAnyOrder) {
  for (const std::vector<std::string>& texts :
       {std::vector<std::string>{"unicastTimeouts=6000,7000", "unicastMaximumWait=9000"},
        std::vector<std::string>{"unicastMaximumWait=9000", "unicastTimeouts=6000,7000"}}) {
    CKelSLPServiceConfig config;
    EXPECT_EQ(Assign(config, Parsed(texts)), Problem());
    EXPECT_EQ(config.GetUnicastMaximumWait(), 9000);
    EXPECT_EQ(config.GetUnicastTimeouts(), (std::vector<int>{6000, 7000}));
  }
}

TEST(Settings, TellTheFirstThatIsWrong) {
  CKelSLPServiceConfig config;
  EXPECT_EQ(Assign(config, Parsed({"traceReg=true", "isDA=yes", "MTU=x"})),
            Problem("'isDA' cannot be set: 'yes' is neither true nor false"));
  EXPECT_EQ(Assign(config, Parsed({"MTU=1", "MTU=1400"})),
            Problem("'MTU' cannot be set: " + CKelSLPConfig::ValidateMTU(1).GetErrorDetail()));
  EXPECT_EQ(Assign(config, Parsed({"useScopes=A", "useScopes=B,C"})), Problem());
  EXPECT_EQ(config.GetUseScopes(), (std::vector<std::string>{"B", "C"}));
}

// The properties that a problem with these values of the daemon's waits is about.
std::vector<CKelSLPConfig::EProperty> LostWith(int wait, const std::vector<int>& timeouts) {
  std::vector<SResult> problems;
  const CKelSLPConfig config(CKelSLPConfig::MULTICASTTTL_DEFAULT, wait, timeouts, CKelSLPConfig::MTU_DEFAULT,
                             "", false, {}, true, CKelSLPConfig::PORT_DEFAULT, false, true, false, "",
                             problems);
  EXPECT_EQ(problems.size(), 1U);
  std::vector<CKelSLPConfig::EProperty> lost;
  for (const CKelSLPConfig::EProperty property : CKelSLPConfig::GetEProperty()) {
    if (!problems.empty() && IsAbout(problems.front(), property)) {
      lost.push_back(property);
    }
  }
  return lost;
}

TEST(Settings, LoseAWaitAndItsTimeoutsTogether) {
  const auto both = testing::UnorderedElementsAre(CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT,
                                                  CKelSLPConfig::PROP_UNICASTTIMEOUTS);
  EXPECT_THAT(LostWith(400, {100, 200}), both);
  EXPECT_THAT(LostWith(8000, {500, 50}), both);
}

TEST(Settings, AreLostOneByOneWhereTheyAreNoNumbers) {
  const SResult problem(
      SResult::ERR_PROPERTY_PARSE,
      "Property: " + CKelSLPConfig::ToString(CKelSLPConfig::PROP_UNICASTTIMEOUTS) + ". Cannot convert.",
      "f g");
  EXPECT_TRUE(IsAbout(problem, CKelSLPConfig::PROP_UNICASTTIMEOUTS));
  EXPECT_FALSE(IsAbout(problem, CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT));
  EXPECT_FALSE(IsAbout(problem, CKelSLPConfig::PROP_MULTICASTTIMEOUTS));
}

TEST(Settings, RefuseWhatIsNoAssignment) {
  Assignment assignment;
  EXPECT_EQ(ParseAssignment("isDA", assignment), Problem("settings are given as KEY=VALUE, not 'isDA'"));
  EXPECT_EQ(ParseAssignment("=3", assignment),
            Problem("there is no setting ''; 'kelsd config show' lists them"));
  EXPECT_EQ(ParseAssignment("broadcastAddr=a=b", assignment), Problem());
  EXPECT_EQ(assignment.value, "a=b");
}

}  // namespace
}  // namespace kelsd_tool
