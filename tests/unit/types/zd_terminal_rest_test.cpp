#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "kelsd/CKelServiceTypeZDTerminalREST.h"
#include "unit/types/accessor_cases.h"

namespace kelsd {
namespace {

using Type = CKelServiceTypeZDTerminalREST;
using Attributes = std::map<IKelServiceType::EAttr, std::string>;

const Attributes kFresh = {
    {IKelServiceType::ATTR_VERSION, ""},
    {IKelServiceType::ATTR_IP_ADDRESSES, ""},
    {IKelServiceType::ATTR_OPERATION, ""},
    {IKelServiceType::ATTR_SERVER_MODE, ""},
    {IKelServiceType::ATTR_SERVER_ZD_STATUS, ""},
    {IKelServiceType::ATTR_SERVER_NS_STATUS, ""},
    {IKelServiceType::ATTR_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_SERVER_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NETWORKADAPTER, ""},
    {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, "FALSE"},
    {IKelServiceType::ATTR_PARTNER_TERMINAL, ""},
    {IKelServiceType::ATTR_PARTNER_SERVER_NAME, ""},
    {IKelServiceType::ATTR_PARTNER_NS_NAME, ""},
    {IKelServiceType::ATTR_VERSION_ZD, ""},
    {IKelServiceType::ATTR_SERVER_MODE_LAST_STARTED, ""},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, "FALSE"},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES, ""},
};

TEST(ZDTerminalRestTest, StartsWithItsAttributesAtTheirDefaults) {
  const Type type("10.0.0.5:8081", 120);
  EXPECT_EQ(type.GetTypeString(), "service:terminal.tamro:http");
  EXPECT_EQ(type.GetServiceURL(), "service:terminal.tamro:http://10.0.0.5:8081");
  EXPECT_EQ(type.GetLifetime(), 120);
  EXPECT_THAT(type.GetScopes(), testing::ElementsAre("tamro"));
  EXPECT_EQ(type.GetAttributes(), kFresh);
  EXPECT_THAT(type.GetAttributeTags(),
              testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
}

TEST(ZDTerminalRestTest, TakesFoundValues) {
  SKelServiceAttributeSearchResult result;
  result.Attributes = {
      {IKelServiceType::ATTR_OPERATION, "BACKUP"},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, "1"},
      {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, "True"},
      {IKelServiceType::ATTR_SERVER_TERMINAL, "ignored"},
  };
  const Type type(result);
  Attributes expected = kFresh;
  expected[IKelServiceType::ATTR_OPERATION] = "BACKUP";
  expected[IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA] = "1";
  expected[IKelServiceType::ATTR_SERVER_CLUSTER_STATUS] = "True";
  EXPECT_EQ(type.GetAttributes(), expected);
  EXPECT_EQ(type.GetAttrOperation(), Type::OPERATION_BACKUP);
  EXPECT_FALSE(type.GetAttrServicediscoveryIsDa());
  EXPECT_TRUE(type.GetAttrServerClusterStatus());
  EXPECT_EQ(type.GetAddress(), "");
  EXPECT_EQ(type.GetLifetime(), 300);
  EXPECT_THAT(type.GetScopes(), testing::ElementsAre("tamro"));
}

TEST(ZDTerminalRestTest, HasTextAttributes) {
  const test::TextAccessor<Type> accessors[] = {
      {IKelServiceType::ATTR_SERVER_NAME, &Type::GetAttrServerName, &Type::SetAttrServerName},
      {IKelServiceType::ATTR_SERVER_NS_NAME, &Type::GetAttrServerNSName, &Type::SetAttrServerNSName},
      {IKelServiceType::ATTR_SERVER_NETWORKADAPTER, &Type::GetAttrServerNetworkAdapter,
       &Type::SetAttrServerNetworkAdapter},
      {IKelServiceType::ATTR_PARTNER_TERMINAL, &Type::GetAttrPartnerTerminal, &Type::SetAttrPartnerTerminal},
      {IKelServiceType::ATTR_PARTNER_SERVER_NAME, &Type::GetAttrPartnerServerName,
       &Type::SetAttrPartnerServerName},
      {IKelServiceType::ATTR_PARTNER_NS_NAME, &Type::GetAttrPartnerNSName, &Type::SetAttrPartnerNSName},
      {IKelServiceType::ATTR_VERSION_ZD, &Type::GetAttrVersionZD, &Type::SetAttrVersionZD},
  };
  for (const auto& accessor : accessors) {
    test::ExpectText(Type("", 60), accessor);
  }
}

TEST(ZDTerminalRestTest, HasThePortOfTheNamingService) {
  test::ExpectPort(Type("", 60), {IKelServiceType::ATTR_SERVER_NS_PORT, &Type::GetAttrServerNSPort,
                                  &Type::SetAttrServerNSPort});
}

TEST(ZDTerminalRestTest, HasTheAddressesOfTheDirectoryAgents) {
  test::ExpectAddresses(
      Type("", 60), {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES,
                     &Type::GetAttrServicediscoveryDaAddresses, &Type::SetAttrServicediscoveryDaAddresses});
  Type type("", 60);
  type.SetAttrServicediscoveryDaAddresses({"10.0.0.9", " 10.0.0.1 "});
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES), "10.0.0.1,10.0.0.9");
}

TEST(ZDTerminalRestTest, HasBooleanAttributes) {
  struct Row {
    IKelServiceType::EAttr tag;
    bool (Type::*get)() const;
    void (Type::*set)(const bool&);
  };
  const Row rows[] = {
      {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, &Type::GetAttrServerClusterStatus,
       &Type::SetAttrServerClusterStatus},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, &Type::GetAttrServicediscoveryIsDa,
       &Type::SetAttrServicediscoveryIsDa},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(IKelServiceType::ToString(row.tag));
    Type type("", 60);
    EXPECT_FALSE((type.*row.get)());
    (type.*row.set)(true);
    Attributes expected = kFresh;
    expected[row.tag] = "TRUE";
    EXPECT_EQ(type.GetAttributes(), expected);
    EXPECT_TRUE((type.*row.get)());
    (type.*row.set)(false);
    EXPECT_EQ(type.GetAttributes(), kFresh);
    EXPECT_FALSE((type.*row.get)());
    for (const char* text : {"TRUE", "true", "True"}) {
      type.SetAttributeValue(row.tag, text);
      EXPECT_TRUE((type.*row.get)()) << text;
    }
    for (const char* text : {"1", "yes", "", "on", " true"}) {
      type.SetAttributeValue(row.tag, text);
      EXPECT_FALSE((type.*row.get)()) << text;
    }
  }
}

template <typename Enum>
struct EnumAccessor {
  IKelServiceType::EAttr tag;
  Enum (Type::*get)() const;
  void (Type::*set)(const Enum&);
};

template <typename Enum>
void ExpectEnum(const EnumAccessor<Enum>& accessor) {
  SCOPED_TRACE(IKelServiceType::ToString(accessor.tag));
  Type type("", 60);
  EXPECT_EQ((type.*accessor.get)(), Enum{});
  for (int number = 0; number < 12; ++number) {
    const auto value = static_cast<Enum>(number);
    (type.*accessor.set)(value);
    Attributes expected = kFresh;
    expected[accessor.tag] = Type::ToString(value);
    EXPECT_EQ(type.GetAttributes(), expected);
    EXPECT_EQ((type.*accessor.get)(), Type::ToString(value).empty() ? Enum{} : value);
  }
  for (const char* text : {"", "main", "server", "stopped", "OTHER"}) {
    type.SetAttributeValue(accessor.tag, text);
    EXPECT_EQ((type.*accessor.get)(), Enum{}) << text;
  }
}

TEST(ZDTerminalRestTest, HasAnOperation) {
  ExpectEnum<Type::EOperation>(
      {IKelServiceType::ATTR_OPERATION, &Type::GetAttrOperation, &Type::SetAttrOperation});
}

TEST(ZDTerminalRestTest, HasServerModes) {
  const EnumAccessor<Type::EServerMode> accessors[] = {
      {IKelServiceType::ATTR_SERVER_MODE, &Type::GetAttrServerMode, &Type::SetAttrServerMode},
      {IKelServiceType::ATTR_SERVER_MODE_LAST_STARTED, &Type::GetAttrServerModeLastStarted,
       &Type::SetAttrServerModeLastStarted},
  };
  for (const auto& accessor : accessors) {
    ExpectEnum(accessor);
  }
  Type type("", 60);
  type.SetAttrServerMode(static_cast<Type::EServerMode>(7));
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_SERVER_MODE), "54FREE_SERVERONLY");
}

TEST(ZDTerminalRestTest, HasExecutableStatuses) {
  const EnumAccessor<Type::EExecutableStatus> accessors[] = {
      {IKelServiceType::ATTR_SERVER_ZD_STATUS, &Type::GetAttrServerZDStatus, &Type::SetAttrServerZDStatus},
      {IKelServiceType::ATTR_SERVER_NS_STATUS, &Type::GetAttrServerNSStatus, &Type::SetAttrServerNSStatus},
  };
  for (const auto& accessor : accessors) {
    ExpectEnum(accessor);
  }
}

TEST(ZDTerminalRestTest, AddsNoMembersToTheBase) {
  EXPECT_EQ(sizeof(Type), sizeof(CKelServiceTypeTamroBase));
}

}  // namespace
}  // namespace kelsd
