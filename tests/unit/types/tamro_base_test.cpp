#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "kelsd/CKelServiceTypeTamroBase.h"

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Attributes = std::map<IKelServiceType::EAttr, std::string>;

class PlainType : public CKelServiceTypeTamroBase {
 public:
  using CKelServiceTypeTamroBase::AddAttribute;
  using CKelServiceTypeTamroBase::AddScope;
  using CKelServiceTypeTamroBase::CKelServiceTypeTamroBase;

  std::string GetTypeString() const override { return "service:plain.tamro:http"; }
};

TEST(TamroBaseTest, IsAbstractAndDestroyedThroughTheInterface) {
  EXPECT_TRUE(std::is_abstract_v<IKelServiceType>);
  EXPECT_TRUE(std::is_abstract_v<CKelServiceTypeTamroBase>);
  EXPECT_TRUE(std::has_virtual_destructor_v<IKelServiceType>);
  EXPECT_TRUE((std::is_base_of_v<IKelServiceType, CKelServiceTypeTamroBase>));
}

TEST(TamroBaseTest, StartsInTheDefaultScopeWithTwoEmptyAttributes) {
  const PlainType type("host:1", 60);
  EXPECT_EQ(type.GetAddress(), "host:1");
  EXPECT_EQ(type.GetLifetime(), 60);
  EXPECT_THAT(type.GetScopes(), ElementsAre("tamro"));
  EXPECT_THAT(type.GetAttributeTags(),
              ElementsAre(IKelServiceType::ATTR_VERSION, IKelServiceType::ATTR_IP_ADDRESSES));
  EXPECT_EQ(type.GetAttributes(),
            (Attributes{{IKelServiceType::ATTR_VERSION, ""}, {IKelServiceType::ATTR_IP_ADDRESSES, ""}}));
}

TEST(TamroBaseTest, KeepsAddressAndLifetimeAsGiven) {
  PlainType type("", 0);
  type.SetAddress(" any text ");
  type.SetLifetime(65535);
  EXPECT_EQ(type.GetAddress(), " any text ");
  EXPECT_EQ(type.GetLifetime(), 65535);
}

TEST(TamroBaseTest, BuildsTheServiceUrl) {
  PlainType type("10.1.2.3:8080", 60);
  EXPECT_EQ(type.GetServiceURL(), "service:plain.tamro:http://10.1.2.3:8080");
  type.SetAddress("");
  EXPECT_EQ(type.GetServiceURL(), "service:plain.tamro:http://");
  type.SetAddress("a b%(");
  EXPECT_EQ(type.GetServiceURL(), "service:plain.tamro:http://a b%(");
}

TEST(TamroBaseTest, BuildsTheServiceUrlFromAnOverriddenAddress) {
  class ElsewhereType : public PlainType {
   public:
    using PlainType::PlainType;
    std::string GetAddress() const override { return "elsewhere"; }
  };
  EXPECT_EQ(ElsewhereType("here", 60).GetServiceURL(), "service:plain.tamro:http://elsewhere");
}

TEST(TamroBaseTest, SetsOnlyAttributesThatItCarries) {
  PlainType type("", 60);
  const Attributes before = type.GetAttributes();
  EXPECT_FALSE(type.HasAttribute(IKelServiceType::ATTR_SERVER_MODE));
  EXPECT_FALSE(type.SetAttributeValue(IKelServiceType::ATTR_SERVER_MODE, "MAIN"));
  EXPECT_FALSE(type.SetAttributeValue(IKelServiceType::ATTR_NONE, "MAIN"));
  EXPECT_EQ(type.GetAttributes(), before);
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_SERVER_MODE), "");

  EXPECT_TRUE(type.HasAttribute(IKelServiceType::ATTR_VERSION));
  EXPECT_TRUE(type.SetAttributeValue(IKelServiceType::ATTR_VERSION, " (1,2) "));
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_VERSION), " (1,2) ");
}

TEST(TamroBaseTest, AddsAttributesOnce) {
  PlainType type("", 60);
  type.AddAttribute(IKelServiceType::ATTR_SERVER_NAME, "first");
  type.AddAttribute(IKelServiceType::ATTR_SERVER_NAME, "second");
  type.AddAttribute(IKelServiceType::ATTR_VERSION, "third");
  EXPECT_EQ(type.GetAttributes(), (Attributes{{IKelServiceType::ATTR_VERSION, ""},
                                              {IKelServiceType::ATTR_IP_ADDRESSES, ""},
                                              {IKelServiceType::ATTR_SERVER_NAME, "first"}}));
}

TEST(TamroBaseTest, ListsTagsAscendingInWhateverOrderTheyWereAdded) {
  PlainType type("", 60);
  type.AddAttribute(IKelServiceType::ATTR_SERVICEHOST_INSTANCE_NAME, "");
  type.AddAttribute(IKelServiceType::ATTR_OPERATION, "");
  EXPECT_THAT(type.GetAttributeTags(),
              ElementsAre(IKelServiceType::ATTR_VERSION, IKelServiceType::ATTR_IP_ADDRESSES,
                          IKelServiceType::ATTR_OPERATION, IKelServiceType::ATTR_SERVICEHOST_INSTANCE_NAME));
}

TEST(TamroBaseTest, AddsScopesOnceInOrder) {
  PlainType type("", 60);
  type.AddScope("tamro");
  EXPECT_THAT(type.GetScopes(), ElementsAre("tamro"));
  type.AddScope("Tamro");
  type.AddScope("a");
  type.AddScope("a");
  EXPECT_THAT(type.GetScopes(), ElementsAre("tamro", "Tamro", "a"));
}

TEST(TamroBaseTest, HasAVersion) {
  PlainType type("", 60);
  EXPECT_EQ(type.GetAttrVersion(), "");
  type.SetAttrVersion("4.2");
  EXPECT_EQ(type.GetAttrVersion(), "4.2");
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_VERSION), "4.2");
}

TEST(TamroBaseTest, StoresAddressesCleanedAndSorted) {
  PlainType type("", 60);
  type.SetAttrIPAddresses({" 10.0.0.2", "fe80::1", "10.0.0.1"});
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_IP_ADDRESSES), "10.0.0.1,10.0.0.2,FE80::1");
  EXPECT_THAT(type.GetAttrIPAddresses(), ElementsAre("10.0.0.1", "10.0.0.2", "FE80::1"));
  type.SetAttrIPAddresses({});
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_IP_ADDRESSES), "");
  EXPECT_THAT(type.GetAttrIPAddresses(), IsEmpty());
}

TEST(TamroBaseTest, ReadsAddressesInAnotherForm) {
  PlainType type("", 60);
  type.SetAttributeValue(IKelServiceType::ATTR_IP_ADDRESSES, "fe80::1,, 10.0.0.9 ,10.0.0.1");
  EXPECT_THAT(type.GetAttrIPAddresses(), ElementsAre("10.0.0.1", "10.0.0.9", "FE80::1"));
}

TEST(TamroBaseTest, InitializesItsOwnTagsOnly) {
  PlainType type("host", 60);
  type.SetAttrIPAddresses({"10.0.0.1"});
  SKelServiceAttributeSearchResult result("(x-ip-addresses=10.9.9.9)");
  result.Attributes[IKelServiceType::ATTR_VERSION] = "2.1";
  result.Attributes[IKelServiceType::ATTR_SERVICEHOST_MODE] = "X";
  type.Initialize(result);
  EXPECT_EQ(type.GetAttributes(), (Attributes{{IKelServiceType::ATTR_VERSION, "2.1"},
                                              {IKelServiceType::ATTR_IP_ADDRESSES, "10.0.0.1"}}));
  EXPECT_EQ(type.GetAddress(), "host");
  EXPECT_EQ(type.GetLifetime(), 60);
  EXPECT_THAT(type.GetScopes(), ElementsAre("tamro"));
}

TEST(TamroBaseTest, InitializesWithAFoundEmptyValueToo) {
  PlainType type("", 60);
  type.SetAttrVersion("1");
  SKelServiceAttributeSearchResult result;
  result.Attributes[IKelServiceType::ATTR_VERSION] = "";
  type.Initialize(result);
  EXPECT_EQ(type.GetAttrVersion(), "");
}

TEST(TamroBaseTest, InitializesThroughTheOverriddenOperations) {
  class RecordingType : public PlainType {
   public:
    using PlainType::PlainType;
    std::vector<EAttr> GetAttributeTags() const override {
      return {ATTR_VERSION, ATTR_SERVER_NAME, ATTR_SERVICEHOST_MODE};
    }
    bool SetAttributeValue(const EAttr& tag, const std::string& value) override {
      set.emplace_back(tag, value);
      return false;
    }
    std::vector<std::pair<EAttr, std::string>> set;
  };
  RecordingType type("", 60);
  SKelServiceAttributeSearchResult result;
  result.Attributes[IKelServiceType::ATTR_SERVICEHOST_MODE] = "mode";
  result.Attributes[IKelServiceType::ATTR_IP_ADDRESSES] = "10.0.0.1";
  result.Attributes[IKelServiceType::ATTR_VERSION] = "1";
  type.Initialize(result);
  EXPECT_THAT(type.set, ElementsAre(std::pair(IKelServiceType::ATTR_VERSION, std::string("1")),
                                    std::pair(IKelServiceType::ATTR_SERVICEHOST_MODE, std::string("mode"))));
}

TEST(TamroBaseTest, RespectsAnOverriddenHasAttribute) {
  class VersionlessType : public PlainType {
   public:
    using PlainType::PlainType;
    bool HasAttribute(const EAttr& tag) const override { return tag != ATTR_VERSION; }
  };
  VersionlessType type("", 60);
  EXPECT_FALSE(type.SetAttributeValue(IKelServiceType::ATTR_VERSION, "1"));
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_VERSION), "");
  EXPECT_EQ(type.GetAttributes().at(IKelServiceType::ATTR_VERSION), "");
  EXPECT_FALSE(type.SetAttributeValue(IKelServiceType::ATTR_OPERATION, "1"));
  EXPECT_EQ(type.GetAttributeValue(IKelServiceType::ATTR_OPERATION), "");
}

TEST(TamroBaseTest, CopiesAreIndependent) {
  PlainType original("host", 60);
  PlainType copy = original;
  copy.SetAddress("other");
  copy.SetAttrVersion("2");
  copy.AddScope("more");
  copy.SetLifetime(5);
  EXPECT_EQ(original.GetServiceURL(), "service:plain.tamro:http://host");
  EXPECT_EQ(original.GetAttrVersion(), "");
  EXPECT_THAT(original.GetScopes(), ElementsAre("tamro"));
  EXPECT_EQ(original.GetLifetime(), 60);
}

}  // namespace
}  // namespace kelsd
