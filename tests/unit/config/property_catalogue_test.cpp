#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPConfig.h"

namespace kelsd {
namespace {

struct Row {
  int number;
  CKelSLPConfig::EProperty property;
  std::string label;
  std::string key;
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = {
      {0, CKelSLPConfig::PROP_UNKNOWN, "unknown", "unknown"},
      {1, CKelSLPConfig::PROP_ISDA, "Is Directory Agent", "net.slp.isDA"},
      {2, CKelSLPConfig::PROP_DAHEARTBEAT, "Directory Agent Heart Beat", "net.slp.DAHeartBeat"},
      {3, CKelSLPConfig::PROP_DAATTRIBUTES, "Directory Agent Attributes", "net.slp.DAAttributes"},
      {4, CKelSLPConfig::PROP_USESCOPES, "Use Scopes", "net.slp.useScopes"},
      {5, CKelSLPConfig::PROP_DAADDRESSES, "Directory Agent Addresses", "net.slp.DAAddresses"},
      {6, CKelSLPConfig::PROP_TRACEDATRAFFIC, "Trace Directory Agent Traffic", "net.slp.traceDATraffic"},
      {7, CKelSLPConfig::PROP_TRACEMSG, "Trace Messages", "net.slp.traceMsg"},
      {8, CKelSLPConfig::PROP_TRACEDROP, "Trace Drops", "net.slp.traceDrop"},
      {9, CKelSLPConfig::PROP_TRACEREG, "Trace Registrations", "net.slp.traceReg"},
      {10, CKelSLPConfig::PROP_APPENDLOG, "Append Log", "net.slp.appendLog"},
      {11, CKelSLPConfig::PROP_SERIALIZEDREGURL, "Serialized Registration URL", "net.slp.serializedRegURL"},
      {12, CKelSLPConfig::PROP_ISBROADCASTONLY, "Is Broadcast Only", "net.slp.isBroadcastOnly"},
      {13, CKelSLPConfig::PROP_PASSIVEDADETECTION, "Passive Directory Agent Detection",
       "net.slp.passiveDADetection"},
      {14, CKelSLPConfig::PROP_MULTICASTTTL, "Multicast TTL", "net.slp.multicastTTL"},
      {15, CKelSLPConfig::PROP_DAACTIVEDISCOVERYINTERVAL, "Directory Agent Active Discovery Interval",
       "net.slp.DAActiveDiscoveryInterval"},
      {16, CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT, "Multicast Maximum Wait",
       "net.slp.multicastMaximumWait"},
      {17, CKelSLPConfig::PROP_MULTICASTTIMEOUTS, "Multicast Timeouts", "net.slp.multicastTimeouts"},
      {18, CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS, "Directory Agent Discovery Timeouts",
       "net.slp.DADiscoveryTimeouts"},
      {19, CKelSLPConfig::PROP_DATAGRAMTIMEOUTS, "Datagram Timeouts", "net.slp.datagramTimeouts"},
      {20, CKelSLPConfig::PROP_RANDOMWAITBOUND, "Random Wait Bound", "net.slp.randomWaitBound"},
      {21, CKelSLPConfig::PROP_MTU, "MTU", "net.slp.MTU"},
      {22, CKelSLPConfig::PROP_INTERFACES, "Interfaces", "net.slp.interfaces"},
      {23, CKelSLPConfig::PROP_SAATTRIBUTES, "Service Agent Attributes", "net.slp.SAAttributes"},
      {24, CKelSLPConfig::PROP_LOCALE, "Locale", "net.slp.locale"},
      {25, CKelSLPConfig::PROP_MAXRESULTS, "Maximum Results", "net.slp.maxResults"},
      {26, CKelSLPConfig::PROP_TYPEHINT, "Type Hint", "net.slp.typeHint"},
      {27, CKelSLPConfig::PROP_PREFERSLPV1, "Prefer SLPv1", "net.slp.preferSLPv1"},
      {28, CKelSLPConfig::PROP_SECURITYENABLED, "Security Enabled", "net.slp.securityEnabled"},
      {29, CKelSLPConfig::PROP_WATCHREGISTRATIONPID, "Watch Registration PID",
       "net.slp.watchRegistrationPID"},
      {30, CKelSLPConfig::PROP_OPENSLPVERSION, "OpenSLP Version", "net.slp.OpenSLPVersion"},
      {31, CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT, "Unicast Maximum Wait", "net.slp.unicastMaximumWait"},
      {32, CKelSLPConfig::PROP_UNICASTTIMEOUTS, "Unicast Timeouts", "net.slp.unicastTimeouts"},
      {33, CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT, "Directory Agent Discovery Maximum Wait",
       "net.slp.DADiscoveryMaximumWait"},
      {34, CKelSLPConfig::PROP_ACTIVEDADETECTION, "Active Directory Agent Detection",
       "net.slp.activeDADetection"},
      {35, CKelSLPConfig::PROP_CHECKSOURCEADDR, "Check Source Address", "net.slp.checkSourceAddr"},
      {36, CKelSLPConfig::PROP_BROADCASTADDR, "Broadcast Address", "net.slp.broadcastAddr"},
      {37, CKelSLPConfig::PROP_PORT, "Port", "net.slp.port"},
      {38, CKelSLPConfig::PROP_USEDHCP, "Use DHCP", "net.slp.useDHCP"},
      {39, CKelSLPConfig::PROP_STALEDACHECKPERIOD, "Stale Directory Agent Check Period",
       "net.slp.staleDACheckPeriod"},
      {40, CKelSLPConfig::PROP_INDEXSRVTYPE, "Index Service Type", "net.slp.indexSrvtype"},
      {41, CKelSLPConfig::PROP_INDEXEDATTRIBUTES, "Indexed Attributes", "net.slp.indexedAttributes"},
      {42, CKelSLPConfig::PROP_USEIPV6, "Use IPv6", "net.slp.useIPv6"},
      {43, CKelSLPConfig::PROP_USEIPV4, "Use IPv4", "net.slp.useIPv4"},
      {44, CKelSLPConfig::PROP_OPENSLPCONFIGFILE, "Main Configuration File", "net.slp.OpenSLPConfigFile"},
      {45, CKelSLPConfig::PROP_ENVCONFIGFILE, "Environment Configuration File", "net.slp.EnvConfigFile"},
      {46, CKelSLPConfig::PROP_APPCONFIGFILE, "Application Configuration File", "net.slp.AppConfigFile"},
  };
  return rows;
}

CKelSLPConfig::EProperty Cast(int number) {
  return static_cast<CKelSLPConfig::EProperty>(number);
}

TEST(PropertyCatalogue, IsAnEnumerationOfInt) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<CKelSLPConfig::EProperty>, int>));
  EXPECT_TRUE((std::is_convertible_v<CKelSLPConfig::EProperty, int>));
}

TEST(PropertyCatalogue, GivesEachPropertyNumberLabelAndKey) {
  ASSERT_EQ(Rows().size(), 47U);
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.number);
    EXPECT_EQ(static_cast<int>(row.property), row.number);
    EXPECT_EQ(CKelSLPConfig::ToString(row.property), row.label);
    EXPECT_EQ(CKelSLPConfig::ToStringKey(row.property), row.key);
  }
}

TEST(PropertyCatalogue, FindsEachPropertyByItsKeyAndLeavesTheFlag) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.key);
    bool lowered = false;
    EXPECT_EQ(CKelSLPConfig::StringKeyToEProperty(row.key, &lowered), row.property);
    EXPECT_FALSE(lowered);
    bool raised = true;
    EXPECT_EQ(CKelSLPConfig::StringKeyToEProperty(row.key, &raised), row.property);
    EXPECT_TRUE(raised);
    EXPECT_EQ(CKelSLPConfig::StringKeyToEProperty(row.key, nullptr), row.property);
  }
}

TEST(PropertyCatalogue, RaisesTheFlagForKeysThatAreNone) {
  for (const std::string key : {"net.slp.mtu", "NET.SLP.MTU", " net.slp.MTU", "net.slp.MTU ", "MTU", "",
                                "Unknown", "net.slp.", "net.slp.zzz", "aaa"}) {
    SCOPED_TRACE(key);
    bool not_found = false;
    EXPECT_EQ(CKelSLPConfig::StringKeyToEProperty(key, &not_found), CKelSLPConfig::PROP_UNKNOWN);
    EXPECT_TRUE(not_found);
    EXPECT_EQ(CKelSLPConfig::StringKeyToEProperty(key, nullptr), CKelSLPConfig::PROP_UNKNOWN);
  }
}

TEST(PropertyCatalogue, CallsEverythingElseUnknown) {
  for (const int number : {-1, 47, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    SCOPED_TRACE(number);
    EXPECT_EQ(CKelSLPConfig::ToString(Cast(number)), "unknown");
    EXPECT_EQ(CKelSLPConfig::ToStringKey(Cast(number)), "unknown");
  }
}

TEST(PropertyCatalogue, TellsTheNumbersOfEnumerators) {
  for (const Row& row : Rows()) {
    EXPECT_TRUE(CKelSLPConfig::IsValidEProperty(row.number)) << row.number;
  }
  for (const int number : {-1, 47, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_FALSE(CKelSLPConfig::IsValidEProperty(number)) << number;
  }
}

TEST(PropertyCatalogue, ListsTheRealPropertiesInAscendingOrder) {
  std::vector<CKelSLPConfig::EProperty> expected;
  for (int number = 1; number <= 46; ++number) {
    expected.push_back(Cast(number));
  }
  EXPECT_EQ(CKelSLPConfig::GetEProperty(), expected);
}

}  // namespace
}  // namespace kelsd
