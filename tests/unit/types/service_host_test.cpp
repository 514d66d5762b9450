#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>

#include "kelsd/CKelServiceTypeServiceHost.h"
#include "unit/types/accessor_cases.h"

namespace kelsd {
namespace {

using Type = CKelServiceTypeServiceHost;
using Attributes = std::map<IKelServiceType::EAttr, std::string>;
using testing::ElementsAre;
using testing::Pair;

TEST(ServiceHostTest, StartsWithEmptyAttributes) {
  const Type type("render", "10.0.0.7:9000", 60);
  EXPECT_EQ(Type::GetAbstractTypeString(), "service:servicehost.tamro");
  EXPECT_EQ(type.GetConcreteType(), "render");
  EXPECT_EQ(type.GetTypeString(), "service:servicehost.tamro:render");
  EXPECT_EQ(type.GetServiceURL(), "service:servicehost.tamro:render://10.0.0.7:9000");
  EXPECT_EQ(type.GetAddress(), "10.0.0.7:9000");
  EXPECT_EQ(type.GetLifetime(), 60);
  EXPECT_THAT(type.GetScopes(), ElementsAre("tamro"));
  EXPECT_THAT(type.GetAttributes(), ElementsAre(Pair(1, ""), Pair(2, ""), Pair(25, ""), Pair(26, ""),
                                                Pair(27, ""), Pair(28, ""), Pair(29, "")));
}

TEST(ServiceHostTest, EmptyConcreteTypeLeavesTheColon) {
  EXPECT_EQ(Type("", "h:1", 60).GetTypeString(), "service:servicehost.tamro:");
}

TEST(ServiceHostTest, ConcreteTypeChangesTypeAndUrl) {
  Type type("render", "h:1", 60);
  type.SetConcreteType(" any:text ");
  EXPECT_EQ(type.GetConcreteType(), " any:text ");
  EXPECT_EQ(type.GetTypeString(), "service:servicehost.tamro: any:text ");
  EXPECT_EQ(type.GetServiceURL(), "service:servicehost.tamro: any:text ://h:1");
}

TEST(ServiceHostTest, AttributeMapIsOrderedByText) {
  EXPECT_THAT(Type("render", "h:1", 60).GetAttributeMap(),
              ElementsAre(Pair("x-ip-addresses", ""), Pair("x-servicehost-instance-name", ""),
                          Pair("x-servicehost-mode", ""), Pair("x-servicehost-plugin-name", ""),
                          Pair("x-servicehost-product-name", ""), Pair("x-servicehost-sdk-version", ""),
                          Pair("x-version", "")));
}

TEST(ServiceHostTest, AttributeMapHasTheCurrentValues) {
  Type type("render", "h:1", 60);
  type.SetAttrMode("x");
  type.SetAttrVersion("1.2");
  EXPECT_EQ(type.GetAttributes().at(IKelServiceType::ATTR_SERVICEHOST_MODE), "x");
  EXPECT_EQ(type.GetAttributeMap().at("x-servicehost-mode"), "x");
  EXPECT_EQ(type.GetAttributeMap().at("x-version"), "1.2");
}

TEST(ServiceHostTest, AttributeMapIsMadeOfTheOverriddenAttributes) {
  class OtherType : public Type {
   public:
    using Type::Type;
    Attributes GetAttributes() const override { return {{ATTR_OPERATION, "NONE"}}; }
  };
  EXPECT_THAT(OtherType("", "", 60).GetAttributeMap(), ElementsAre(Pair("x-operation", "NONE")));
}

TEST(ServiceHostTest, TakesFoundValues) {
  Type type("render", "h:1", 60);
  SKelServiceAttributeSearchResult result;
  result.Attributes = {{IKelServiceType::ATTR_SERVICEHOST_SDK_VERSION, "3"},
                       {IKelServiceType::ATTR_SERVER_NAME, "ignored"}};
  type.Initialize(result);
  EXPECT_EQ(type.GetAttrSDKVersion(), "3");
  EXPECT_FALSE(type.HasAttribute(IKelServiceType::ATTR_SERVER_NAME));
  EXPECT_EQ(type.GetConcreteType(), "render");
  EXPECT_FALSE((std::is_constructible_v<Type, const SKelServiceAttributeSearchResult&>));
}

TEST(ServiceHostTest, HasTextAttributes) {
  const test::TextAccessor<Type> accessors[] = {
      {IKelServiceType::ATTR_SERVICEHOST_SDK_VERSION, &Type::GetAttrSDKVersion, &Type::SetAttrSDKVersion},
      {IKelServiceType::ATTR_SERVICEHOST_PRODUCT_NAME, &Type::GetAttrProductName, &Type::SetAttrProductName},
      {IKelServiceType::ATTR_SERVICEHOST_MODE, &Type::GetAttrMode, &Type::SetAttrMode},
      {IKelServiceType::ATTR_SERVICEHOST_PLUGIN_NAME, &Type::GetAttrPluginName, &Type::SetAttrPluginName},
      {IKelServiceType::ATTR_SERVICEHOST_INSTANCE_NAME, &Type::GetAttrInstanceName,
       &Type::SetAttrInstanceName},
  };
  for (const auto& accessor : accessors) {
    test::ExpectText(Type("render", "h:1", 60), accessor);
  }
}

}  // namespace
}  // namespace kelsd
