#include "service/config_file_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "service_fixture.h"

namespace kelsd {
namespace {

using Config = CKelSLPServiceConfig;

std::string IntegersText(const std::vector<int>& values) {
  std::vector<std::string> texts;
  std::transform(values.begin(), values.end(), std::back_inserter(texts), &Stringify<int>);
  return Join(texts);
}

/// A property of the file and the field of a record that it is read into, as text.
struct ReadProperty {
  std::string key;
  std::string preset;
  std::string other;
  std::function<std::string(const Config&)> field;
};

std::function<std::string(const Config&)> Number(int (Config::*get)() const) {
  return [get](const Config& config) { return Stringify<int>((config.*get)()); };
}
std::function<std::string(const Config&)> Flag(bool (Config::*get)() const) {
  return [get](const Config& config) { return BoolToLowerText((config.*get)()); };
}
std::function<std::string(const Config&)> List(std::vector<std::string> (Config::*get)() const) {
  return [get](const Config& config) { return Join((config.*get)()); };
}

std::vector<ReadProperty> ReadProperties() {
  return {
      {"multicastTTL", "255", "7", Number(&Config::GetMulticastTTL)},
      {"unicastMaximumWait", "5000", "6000", Number(&Config::GetUnicastMaximumWait)},
      {"unicastTimeouts", "500,750,1000,1500,2000,3000", "100,200",
       [](const Config& config) { return IntegersText(config.GetUnicastTimeouts()); }},
      {"MTU", "1400", "1000", Number(&Config::GetMTU)},
      {"broadcastAddr", "255.255.255.255", "10.0.0.255",
       [](const Config& config) { return config.GetBroadcastAddr(); }},
      {"useDHCP", "true", "false", Flag(&Config::GetUseDHCP)},
      {"interfaces", "", "10.0.0.2,10.0.0.1", List(&Config::GetInterfaces)},
      {"activeDADetection", "true", "false", Flag(&Config::GetActiveDADetection)},
      {"port", "427", "1427", Number(&Config::GetPPort)},
      {"securityEnabled", "false", "true", Flag(&Config::GetSecurityEnabled)},
      {"useIPv4", "true", "false", Flag(&Config::GetUseIPv4)},
      {"useIPv6", "false", "true", Flag(&Config::GetUseIPv6)},
      {"isDA", "false", "true", Flag(&Config::GetIsDA)},
      {"DAHeartBeat", "10800", "2000", Number(&Config::GetDAHeartBeat)},
      {"staleDACheckPeriod", "0", "3", Number(&Config::GetStaleDACheckPeriod)},
      {"useScopes", "DEFAULT", "TAMRO,LAB", List(&Config::GetUseScopes)},
      {"DAAddresses", "", "10.0.0.4,10.0.0.3", List(&Config::GetDAAddresses)},
      {"watchRegistrationPID", "true", "false", Flag(&Config::GetWatchRegistrationPID)},
      {"indexSrvtype", "false", "true", Flag(&Config::GetIndexSrvtype)},
      {"indexedAttributes", "", "x-b,x-a", List(&Config::GetIndexedAttributes)},
      {"traceDATraffic", "false", "true", Flag(&Config::GetTraceDATraffic)},
      {"traceReg", "false", "true", Flag(&Config::GetTraceReg)},
      {"traceDrop", "false", "true", Flag(&Config::GetTraceDrop)},
      {"traceMsg", "false", "true", Flag(&Config::GetTraceMsg)},
      {"appendLog", "true", "false", Flag(&Config::GetAppendLog)},
      {"isBroadcastOnly", "false", "true", Flag(&Config::GetIsBroadcastOnly)},
      {"passiveDADetection", "true", "false", Flag(&Config::GetPassiveDADetection)},
      {"DAActiveDiscoveryInterval", "900", "5", Number(&Config::GetDAActiveDiscoveryInterval)},
      {"checkSourceAddr", "true", "false", Flag(&Config::GetCheckSourceAddr)},
  };
}

class ConfigFileValues : public ServiceFixture {
 protected:
  /// All fields of what a file with this content gives.
  std::vector<std::string> Fields(const std::string& content) {
    folder.Write("slp.conf", content);
    Config config;
    std::vector<SResult> errors{SResult()};
    EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors), SameResult(kSuccess));
    EXPECT_THAT(errors, testing::IsEmpty());
    EXPECT_EQ(config.GetOpenSLPVersion(), "");
    std::vector<std::string> fields;
    for (const ReadProperty& property : ReadProperties()) {
      fields.push_back(property.key + " = " + property.field(config));
    }
    return fields;
  }
};

TEST_F(ConfigFileValues, EachPropertyIsReadIntoItsFieldAndTheOthersKeepTheirPresets) {
  const std::vector<ReadProperty> properties = ReadProperties();
  std::vector<std::string> presets;
  for (const ReadProperty& property : properties) {
    presets.push_back(property.key + " = " + property.preset);
  }
  EXPECT_EQ(Fields(""), presets);
  for (std::size_t i = 0; i < properties.size(); ++i) {
    std::vector<std::string> expected = presets;
    expected[i] = properties[i].key + " = " + properties[i].other;
    EXPECT_EQ(Fields("net.slp." + expected[i] + "\n"), expected);
  }
}

/// A change of one setting, and the line of the file that shows it.
struct WrittenProperty {
  std::string line;
  std::function<void(Config&)> change;
};

void Accepts(const SResult& result) {
  EXPECT_THAT(result, SameResult(kSuccess));
}

std::vector<WrittenProperty> WrittenProperties() {
  return {
      {"multicastTTL = 7", [](Config& config) { Accepts(config.SetMulticastTTL(7)); }},
      {"unicastMaximumWait = 6000", [](Config& config) { Accepts(config.SetUnicastMaximumWait(6000)); }},
      {"unicastTimeouts = 100,200",
       [](Config& config) {
         Accepts(config.SetUnicastTimeouts({100, 200}));
       }},
      {"MTU = 1000", [](Config& config) { Accepts(config.SetMTU(1000)); }},
      {"broadcastAddr = 10.0.0.255", [](Config& config) { config.SetBroadcastAddr("10.0.0.255"); }},
      {"useDHCP = false", [](Config& config) { config.SetUseDHCP(false); }},
      {"interfaces = 10.0.0.2,10.0.0.1",
       [](Config& config) {
         config.SetInterfaces({"10.0.0.2", "10.0.0.1"});
       }},
      {"isDA = true", [](Config& config) { config.SetIsDA(true); }},
      {"DAHeartBeat = 2000", [](Config& config) { Accepts(config.SetDAHeartBeat(2000)); }},
      {"staleDACheckPeriod = 3", [](Config& config) { Accepts(config.SetStaleDACheckPeriod(3)); }},
      {"useScopes = TAMRO,LAB",
       [](Config& config) {
         config.SetUseScopes({"tamro", "lab"});
       }},
      {"DAAddresses = 10.0.0.4,10.0.0.3",
       [](Config& config) {
         config.SetDAAddresses({"10.0.0.4", "10.0.0.3"});
       }},
      {"watchRegistrationPID = false", [](Config& config) { config.SetWatchRegistrationPID(false); }},
      {"indexSrvtype = true", [](Config& config) { config.SetIndexSrvtype(true); }},
      {"indexedAttributes = x-b,x-a",
       [](Config& config) {
         config.SetIndexedAttributes({"X-B", "x-a"});
       }},
      {"traceDATraffic = true", [](Config& config) { config.SetTraceDATraffic(true); }},
      {"traceReg = true", [](Config& config) { config.SetTraceReg(true); }},
      {"traceDrop = true", [](Config& config) { config.SetTraceDrop(true); }},
      {"traceMsg = true", [](Config& config) { config.SetTraceMsg(true); }},
      {"appendLog = false", [](Config& config) { config.SetAppendLog(false); }},
  };
}

/// The settings of a record that nobody has changed, as they are written.
const std::vector<std::string> kUnchanged{
    "multicastTTL = 255",
    "unicastMaximumWait = 4000",
    "unicastTimeouts = 500,750,1100,1600",
    "MTU = 1400",
    "broadcastAddr = 255.255.255.255",
    "useDHCP = true",
    "interfaces = ",
    "isDA = false",
    "DAHeartBeat = 10800",
    "staleDACheckPeriod = 0",
    "useScopes = DEFAULT",
    "DAAddresses = ",
    "watchRegistrationPID = true",
    "indexSrvtype = false",
    "indexedAttributes = ",
    "traceDATraffic = false",
    "traceReg = false",
    "traceDrop = false",
    "traceMsg = false",
    "appendLog = true",
};

TEST_F(ConfigFileValues, EachSettingIsWrittenUnderItsKey) {
  const std::vector<WrittenProperty> properties = WrittenProperties();
  ASSERT_EQ(properties.size(), kUnchanged.size());
  for (std::size_t i = 0; i < properties.size(); ++i) {
    Config config;
    properties[i].change(config);
    std::vector<std::string> lines = kUnchanged;
    lines[i] = properties[i].line;
    std::string expected;
    for (const std::string& line : lines) {
      expected += "net.slp." + line + "\r\n";
    }
    folder.Write("slp.conf", "");
    EXPECT_THAT(agent.SetSLPServiceConfigInternal(config), SameResult(kSuccess));
    EXPECT_EQ(folder.Read("slp.conf"), expected);
  }
}

}  // namespace
}  // namespace kelsd
