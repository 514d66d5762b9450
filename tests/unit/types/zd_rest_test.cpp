#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>

#include "kelsd/CKelServiceTypeZDREST.h"
#include "unit/types/accessor_cases.h"

namespace kelsd {
namespace {

using Type = CKelServiceTypeZDREST;
using Attributes = std::map<IKelServiceType::EAttr, std::string>;

const Attributes kFresh = {
    {IKelServiceType::ATTR_VERSION, ""},
    {IKelServiceType::ATTR_IP_ADDRESSES, ""},
    {IKelServiceType::ATTR_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_SERVER_NAME, ""},
    {IKelServiceType::ATTR_VERSION_ZD, ""},
    {IKelServiceType::ATTR_SERVER_TERMINAL, ""},
    {IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, "unknown"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_IPS, ""},
};

TEST(ZDRestTest, StartsWithItsAttributesAtTheirDefaults) {
  const Type type("10.0.0.5:8080", 120);
  EXPECT_EQ(type.GetTypeString(), "service:zdrest.tamro:http");
  EXPECT_EQ(type.GetServiceURL(), "service:zdrest.tamro:http://10.0.0.5:8080");
  EXPECT_EQ(type.GetLifetime(), 120);
  EXPECT_THAT(type.GetScopes(), testing::ElementsAre("tamro"));
  EXPECT_EQ(type.GetAttributes(), kFresh);
  EXPECT_THAT(type.GetAttributeTags(), testing::ElementsAre(1, 2, 7, 8, 9, 15, 19, 20, 21, 22, 23, 24));
  EXPECT_EQ(type.GetAttrZDConnectionStatus(), Type::unknown);
}

TEST(ZDRestTest, TakesFoundValues) {
  SKelServiceAttributeSearchResult result("(x-server-name=ignored)");
  result.Attributes = {
      {IKelServiceType::ATTR_VERSION, "2.1"},
      {IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, "connected"},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, "80x"},
      {IKelServiceType::ATTR_SERVICEHOST_MODE, "A"},
  };
  const Type type(result);
  Attributes expected = kFresh;
  expected[IKelServiceType::ATTR_VERSION] = "2.1";
  expected[IKelServiceType::ATTR_SERVER_CONNECTION_STATUS] = "connected";
  expected[IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT] = "80x";
  EXPECT_EQ(type.GetAttributes(), expected);
  EXPECT_EQ(type.GetAttrZDConnectionStatus(), Type::connected);
  EXPECT_EQ(type.GetAttrConfiguredServerNSPort(), 0);
  EXPECT_EQ(type.GetAddress(), "");
  EXPECT_EQ(type.GetLifetime(), 300);
  EXPECT_THAT(type.GetScopes(), testing::ElementsAre("tamro"));
}

TEST(ZDRestTest, HasTextAttributes) {
  const test::TextAccessor<Type> accessors[] = {
      {IKelServiceType::ATTR_SERVER_NAME, &Type::GetAttrServerName, &Type::SetAttrServerName},
      {IKelServiceType::ATTR_SERVER_NS_NAME, &Type::GetAttrServerNSName, &Type::SetAttrServerNSName},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NAME, &Type::GetAttrConfiguredServerName,
       &Type::SetAttrConfiguredServerName},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_NAME, &Type::GetAttrConfiguredServerNSName,
       &Type::SetAttrConfiguredServerNSName},
      {IKelServiceType::ATTR_SERVER_TERMINAL, &Type::GetAttrTerminal, &Type::SetAttrTerminal},
      {IKelServiceType::ATTR_VERSION_ZD, &Type::GetAttrVersionZD, &Type::SetAttrVersionZD},
  };
  for (const auto& accessor : accessors) {
    test::ExpectText(Type("", 60), accessor);
  }
}

TEST(ZDRestTest, HasPorts) {
  const test::PortAccessor<Type> accessors[] = {
      {IKelServiceType::ATTR_SERVER_NS_PORT, &Type::GetAttrServerNSPort, &Type::SetAttrServerNSPort},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, &Type::GetAttrConfiguredServerNSPort,
       &Type::SetAttrConfiguredServerNSPort},
  };
  for (const auto& accessor : accessors) {
    test::ExpectPort(Type("", 60), accessor);
  }
}

TEST(ZDRestTest, HasTheAddressesOfTheNamingService) {
  test::ExpectAddresses(Type("", 60), {IKelServiceType::ATTR_SERVER_NS_IPS, &Type::GetAttrServerNSIpAddresses,
                                       &Type::SetAttrServerNSIpAddresses});
}

TEST(ZDRestTest, WritesAndReadsTheConnectionStatus) {
  struct Row {
    Type::EZDConnectionStatus status;
    int number;
    const char* text;
  };
  const Row rows[] = {
      {Type::unknown, 0, "unknown"},
      {Type::connected, 1, "connected"},
      {Type::connection_lost, 2, "connection_lost"},
  };
  Type type("", 60);
  for (const Row& row : rows) {
    EXPECT_EQ(static_cast<int>(row.status), row.number);
    type.SetAttrZDConnectionStatus(row.status);
    EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_SERVER_CONNECTION_STATUS), row.text);
    EXPECT_EQ(type.GetAttrZDConnectionStatus(), row.status);
  }
}

TEST(ZDRestTest, WritesAnyOtherConnectionStatusAsUnknown) {
  Type type("", 60);
  for (const int number : {3, -1}) {
    type.SetAttrZDConnectionStatus(Type::connected);
    type.SetAttrZDConnectionStatus(static_cast<Type::EZDConnectionStatus>(number));
    EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_SERVER_CONNECTION_STATUS), "unknown");
  }
}

TEST(ZDRestTest, ReadsAnyOtherConnectionStatusAsUnknown) {
  Type type("", 60);
  for (const char* text : {"Connected", "", " connected", "1"}) {
    type.SetAttributeValue(IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, text);
    EXPECT_EQ(type.GetAttrZDConnectionStatus(), Type::unknown) << text;
  }
}

TEST(ZDRestTest, AddsNoMembersToTheBase) {
  EXPECT_EQ(sizeof(Type), sizeof(CKelServiceTypeTamroBase));
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<Type::EZDConnectionStatus>, int>));
}

}  // namespace
}  // namespace kelsd
