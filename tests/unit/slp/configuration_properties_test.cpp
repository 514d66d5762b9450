#include "slp/configuration_properties.h"

#include <gmock/gmock.h>

#include <vector>

#include "support/same_result.h"

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Config = CKelSLPConfig;

template <typename Values>
std::vector<Config::EProperty> Order(std::span<const ConfigurationProperty<Values>> rows) {
  std::vector<Config::EProperty> properties;
  for (const ConfigurationProperty<Values>& row : rows) {
    properties.push_back(row.property);
  }
  return properties;
}

TEST(ConfigurationProperties, ReadsTheClientPropertiesInThisOrder) {
  EXPECT_THAT(Order(ClientProperties()),
              ElementsAre(Config::PROP_MULTICASTTTL, Config::PROP_UNICASTMAXIMUMWAIT,
                          Config::PROP_UNICASTTIMEOUTS, Config::PROP_MTU, Config::PROP_BROADCASTADDR,
                          Config::PROP_USEDHCP, Config::PROP_INTERFACES, Config::PROP_ACTIVEDADETECTION,
                          Config::PROP_PORT, Config::PROP_SECURITYENABLED, Config::PROP_USEIPV4,
                          Config::PROP_USEIPV6, Config::PROP_OPENSLPVERSION, Config::PROP_MAXRESULTS,
                          Config::PROP_DADISCOVERYMAXIMUMWAIT, Config::PROP_DADISCOVERYTIMEOUTS,
                          Config::PROP_MULTICASTMAXIMUMWAIT, Config::PROP_MULTICASTTIMEOUTS));
}

TEST(ConfigurationProperties, ReadsTheServicePropertiesInThisOrder) {
  EXPECT_THAT(
      Order(ServiceProperties()),
      ElementsAre(Config::PROP_MULTICASTTTL, Config::PROP_UNICASTMAXIMUMWAIT, Config::PROP_UNICASTTIMEOUTS,
                  Config::PROP_MTU, Config::PROP_BROADCASTADDR, Config::PROP_USEDHCP, Config::PROP_INTERFACES,
                  Config::PROP_ACTIVEDADETECTION, Config::PROP_PORT, Config::PROP_SECURITYENABLED,
                  Config::PROP_USEIPV4, Config::PROP_USEIPV6, Config::PROP_OPENSLPVERSION, Config::PROP_ISDA,
                  Config::PROP_DAHEARTBEAT, Config::PROP_STALEDACHECKPERIOD, Config::PROP_USESCOPES,
                  Config::PROP_DAADDRESSES, Config::PROP_WATCHREGISTRATIONPID, Config::PROP_INDEXSRVTYPE,
                  Config::PROP_INDEXEDATTRIBUTES, Config::PROP_TRACEDATRAFFIC, Config::PROP_TRACEREG,
                  Config::PROP_TRACEDROP, Config::PROP_TRACEMSG, Config::PROP_APPENDLOG,
                  Config::PROP_ISBROADCASTONLY, Config::PROP_PASSIVEDADETECTION,
                  Config::PROP_DAACTIVEDISCOVERYINTERVAL, Config::PROP_CHECKSOURCEADDR));
}

TEST(ConfigurationProperties, AClientConfigurationBeginsWithItsDefaults) {
  std::vector<SResult> problems;
  const CKelSLPClientConfig config = MakeClientConfig(ClientPropertyValues(), problems);
  EXPECT_TRUE(config.EqualTo(CKelSLPClientConfig()));
  EXPECT_EQ(config.GetOpenSLPVersion(), "");
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ConfigurationProperties, AServiceConfigurationBeginsWithTheStandardsDefaults) {
  std::vector<SResult> problems;
  const CKelSLPServiceConfig config = MakeServiceConfig(ServicePropertyValues(), problems);
  CKelSLPServiceConfig standard;
  ASSERT_TRUE(standard.SetUnicasttMaximumWaitAndTimeouts(5000, {500, 750, 1000, 1500, 2000, 3000}).IsOk());
  EXPECT_TRUE(config.EqualTo(standard));
  EXPECT_EQ(config.GetUnicastMaximumWait(), 5000);
  EXPECT_EQ(config.GetOpenSLPVersion(), "");
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ConfigurationProperties, TellsWhatARecordRefuses) {
  std::vector<SResult> problems = {SResult(SResult::ERR_PROPERTY_GET)};
  ServicePropertyValues values;
  values.mtu = 575;
  values.da_heart_beat = 1999;
  const CKelSLPServiceConfig config = MakeServiceConfig(values, problems);
  EXPECT_EQ(config.GetMTU(), 1400);
  EXPECT_EQ(config.GetDAHeartBeat(), 10800);
  EXPECT_THAT(
      problems,
      ElementsAre(
          SameResult(SResult(SResult::ERR_PROPERTY_GET)),
          SameResult(SResult(SResult::ERR_INVALID_PARAMETER, "MTU is too small (must be at least 576): 575.",
                             "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU")),
          SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                             "Directory agent heart beat is too small (must be at least 2000): "
                             "1999.",
                             "kelsd::CKelSLPServiceConfig::SetDAHeartBeat "
                             "kelsd::CKelSLPServiceConfig::ValidateDAHeartBeat"))));
}

}  // namespace
}  // namespace kelsd
