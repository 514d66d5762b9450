#include <string>
#include <vector>

#include "support/core_fixture.h"

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Snapshot : public CoreFixture {};

TEST_F(Snapshot, HoldsWhatTheSlpLibraryReports) {
  InitializeCore();
  const CKelSLPServiceConfig& snapshot = CKelSLPImpl::PropertySnapshotUnlocked();
  CKelSLPServiceConfig standard;
  ASSERT_TRUE(standard.SetUnicasttMaximumWaitAndTimeouts(5000, {500, 750, 1000, 1500, 2000, 3000}).IsOk());
  EXPECT_TRUE(snapshot.EqualTo(standard));
  EXPECT_EQ(snapshot.GetOpenSLPVersion(), "2.0.0");
  EXPECT_THAT(CKelSLPImpl::SnapshotErrorsUnlocked(), IsEmpty());
}

TEST_F(Snapshot, ReadsEachPropertyIntoItsField) {
  const std::vector<std::pair<std::string, std::string>> values = {
      {"multicastTTL", "8"},
      {"unicastMaximumWait", "3000"},
      {"unicastTimeouts", "200,300"},
      {"MTU", "1300"},
      {"broadcastAddr", "10.255.255.255"},
      {"useDHCP", "false"},
      {"interfaces", "10.0.0.1, eth1"},
      {"activeDADetection", "false"},
      {"port", "4270"},
      {"securityEnabled", "true"},
      {"useIPv4", "false"},
      {"useIPv6", "true"},
      {"OpenSLPVersion", "2.0.1"},
      {"isDA", "true"},
      {"DAHeartBeat", "3600"},
      {"staleDACheckPeriod", "60"},
      {"useScopes", "lab,tamro"},
      {"DAAddresses", "da.local,10.0.0.9"},
      {"watchRegistrationPID", "false"},
      {"indexSrvtype", "true"},
      {"indexedAttributes", "X-Version"},
      {"traceDATraffic", "true"},
      {"traceReg", "true"},
      {"traceDrop", "true"},
      {"traceMsg", "true"},
      {"appendLog", "false"},
      {"isBroadcastOnly", "true"},
      {"passiveDADetection", "false"},
      {"DAActiveDiscoveryInterval", "0"},
      {"checkSourceAddr", "false"},
  };
  for (const auto& [key, value] : values) {
    scripted_slp::SetFileProperty("net.slp." + key, value);
  }
  InitializeCore();
  const CKelSLPServiceConfig& snapshot = CKelSLPImpl::PropertySnapshotUnlocked();
  std::vector<SResult> problems;
  const CKelSLPServiceConfig expected(
      8, 3000, {200, 300}, 1300, "10.255.255.255", false, {"10.0.0.1", "eth1"}, false, 4270, true, false,
      true, "2.0.1", true, 3600, 60, {"lab", "tamro"}, {"da.local", "10.0.0.9"}, false, true, {"X-Version"},
      true, true, true, true, false, true, false, 0, false, problems);
  ASSERT_THAT(problems, IsEmpty());
  EXPECT_TRUE(snapshot.EqualTo(expected));
  EXPECT_EQ(snapshot.GetOpenSLPVersion(), "2.0.1");
  EXPECT_THAT(CKelSLPImpl::SnapshotErrorsUnlocked(), IsEmpty());
}

TEST_F(Snapshot, KeepsThePresetOfEachUnreadableProperty) {
  for (const CKelSLPConfig::EProperty property : CKelSLPConfig::GetEProperty()) {
    scripted_slp::RemoveProperty(CKelSLPConfig::ToStringKey(property));
  }
  InitializeCore();
  const CKelSLPServiceConfig& snapshot = CKelSLPImpl::PropertySnapshotUnlocked();
  CKelSLPServiceConfig standard;
  ASSERT_TRUE(standard.SetUnicasttMaximumWaitAndTimeouts(5000, {500, 750, 1000, 1500, 2000, 3000}).IsOk());
  EXPECT_TRUE(snapshot.EqualTo(standard));
  EXPECT_EQ(snapshot.GetOpenSLPVersion(), "");
  EXPECT_THAT(CKelSLPImpl::SnapshotErrorsUnlocked(), SizeIs(30));
}

TEST_F(Snapshot, ListsWhatCannotBeReadOrParsedInReadingOrderAndWhatIsRefused) {
  scripted_slp::SetFileProperty("net.slp.MTU", "100");
  scripted_slp::SetFileProperty("net.slp.DAHeartBeat", "often");
  scripted_slp::RemoveProperty("net.slp.useDHCP");
  scripted_slp::SetFileProperty("net.slp.unicastTimeouts", "abc");
  InitializeCore();
  EXPECT_THAT(
      CKelSLPImpl::SnapshotErrorsUnlocked(),
      ElementsAre(
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE,
                             "Property: Unicast Timeouts. StringConvert(abc,long double,1).",
                             "CKelSLPImpl::GetSLPServiceConfigInternal kelsd::CKelSLPImpl::GetTimeoutList "
                             "kelsd::CKelSLPImpl::ParseTimeoutsList")),
          SameResult(SResult(SResult::ERR_PROPERTY_GET, "Property name: net.slp.useDHCP",
                             "CKelSLPImpl::GetSLPServiceConfigInternal kelsd::CKelSLPImpl::GetBoolProperty "
                             "kelsd::CKelSLPImpl::GetSLPProperty")),
          SameResult(
              SResult(SResult::ERR_PROPERTY_PARSE,
                      "Property: Directory Agent Heart Beat. StringConvert(often,long double,1).",
                      "CKelSLPImpl::GetSLPServiceConfigInternal kelsd::CKelSLPImpl::GetNumericProperty "
                      "kelsd::CKelSLPImpl::ParseNumericProperty")),
          SameResult(SResult(SResult::ERR_INVALID_PARAMETER, "MTU is too small (must be at least 576): 100.",
                             "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU"))));
  const CKelSLPServiceConfig& snapshot = CKelSLPImpl::PropertySnapshotUnlocked();
  EXPECT_EQ(snapshot.GetMTU(), 1400);
  EXPECT_EQ(snapshot.GetDAHeartBeat(), 10800);
  EXPECT_THAT(snapshot.GetUnicastTimeouts(), ElementsAre(500, 750, 1000, 1500, 2000, 3000));
}

}  // namespace
}  // namespace kelsd
