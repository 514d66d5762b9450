#include <gtest/gtest.h>

#include <string>

#include "kelsd/IKelServiceType.h"

namespace kelsd {
namespace {

const char kFilterOfFive[] =
    "(|(|(|(x-ip-addresses=10.0.0.5)(x-ip-addresses=*,10.0.0.5,*))(x-ip-addresses=*,10.0.0.5))"
    "(x-ip-addresses=10.0.0.5,*))";

TEST(SearchFiltersTest, IpAddressMatchesAnywhereInTheList) {
  EXPECT_EQ(IKelServiceType::GetIpAddressesSearchFilter("10.0.0.5"), kFilterOfFive);
}

TEST(SearchFiltersTest, EmptyIpAddressStaysEmpty) {
  EXPECT_EQ(IKelServiceType::GetIpAddressesSearchFilter(""),
            "(|(|(|(x-ip-addresses=)(x-ip-addresses=*,,*))(x-ip-addresses=*,))(x-ip-addresses=,*))");
}

TEST(SearchFiltersTest, IpAddressAndServerName) {
  EXPECT_EQ(IKelServiceType::GetNSIpServerNameSearchFilter("10.0.0.5", "srv1"),
            "(&(|(|(|(x-ip-addresses=10.0.0.5)(x-ip-addresses=*,10.0.0.5,*))(x-ip-addresses=*,10.0.0.5))"
            "(x-ip-addresses=10.0.0.5,*))(x-server-name=srv1))");
}

TEST(SearchFiltersTest, AnyOfSeveralIpAddressesAndServerName) {
  const std::string one = IKelServiceType::GetIpAddressesSearchFilter("1");
  const std::string two = IKelServiceType::GetIpAddressesSearchFilter("2");
  const std::string three = IKelServiceType::GetIpAddressesSearchFilter("3");
  EXPECT_EQ(IKelServiceType::GetIpsServerNameSearchFilter({}, "srv1"), "(&(x-server-name=srv1))");
  EXPECT_EQ(IKelServiceType::GetIpsServerNameSearchFilter({"10.0.0.5"}, "srv1"),
            std::string("(&") + kFilterOfFive + "(x-server-name=srv1))");
  EXPECT_EQ(IKelServiceType::GetIpsServerNameSearchFilter({"10.0.0.5"}, "srv1"),
            IKelServiceType::GetNSIpServerNameSearchFilter("10.0.0.5", "srv1"));
  EXPECT_EQ(IKelServiceType::GetIpsServerNameSearchFilter({"1", "2"}, "srv1"),
            "(&(|" + one + two + ")(x-server-name=srv1))");
  EXPECT_EQ(IKelServiceType::GetIpsServerNameSearchFilter({"1", "2", "3"}, "srv1"),
            "(&(|(|" + one + two + ")" + three + ")(x-server-name=srv1))");
}

TEST(SearchFiltersTest, NamingServiceName) {
  EXPECT_EQ(IKelServiceType::GetNamingServiceSearchFilter("ns1"), "(x-server-ns-name=ns1)");
  EXPECT_EQ(IKelServiceType::GetNamingServiceSearchFilter(""), "(x-server-ns-name=)");
}

TEST(SearchFiltersTest, NamingServiceNameAndServerName) {
  EXPECT_EQ(IKelServiceType::GetNsNameServerNameSearchFilter("ns1", "srv1"),
            "(&(x-server-ns-name=ns1)(x-server-name=srv1))");
}

TEST(SearchFiltersTest, AnyOfSeveralNamingServiceNamesAndServerName) {
  EXPECT_EQ(IKelServiceType::GetNSIpsServerNameSearchFilter({}, "srv1"), "(&(x-server-name=srv1))");
  EXPECT_EQ(IKelServiceType::GetNSIpsServerNameSearchFilter({"ns1"}, "srv1"),
            "(&(x-server-ns-name=ns1)(x-server-name=srv1))");
  EXPECT_EQ(IKelServiceType::GetNSIpsServerNameSearchFilter({"ns1", "ns2"}, "srv1"),
            "(&(|(x-server-ns-name=ns1)(x-server-ns-name=ns2))(x-server-name=srv1))");
  EXPECT_EQ(
      IKelServiceType::GetNSIpsServerNameSearchFilter({"ns1", "ns2", "ns3"}, "srv1"),
      "(&(|(|(x-server-ns-name=ns1)(x-server-ns-name=ns2))(x-server-ns-name=ns3))(x-server-name=srv1))");
}

TEST(SearchFiltersTest, ValuesPassUnchanged) {
  EXPECT_EQ(IKelServiceType::GetNamingServiceSearchFilter(" (nS*\\) "), "(x-server-ns-name= (nS*\\) )");
  EXPECT_EQ(IKelServiceType::GetNsNameServerNameSearchFilter("*", ")("),
            "(&(x-server-ns-name=*)(x-server-name=)())");
  EXPECT_EQ(IKelServiceType::GetIpAddressesSearchFilter("(*"),
            "(|(|(|(x-ip-addresses=(*)(x-ip-addresses=*,(*,*))(x-ip-addresses=*,(*))(x-ip-addresses=(*,*))");
}

}  // namespace
}  // namespace kelsd
