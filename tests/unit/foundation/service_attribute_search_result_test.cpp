#include "kelsd/SKelServiceAttributeSearchResult.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace kelsd {
namespace {

TEST(ServiceAttributeSearchResultTest, KeepsTheTextUnparsed) {
  SKelServiceAttributeSearchResult result("(x-version=1.2)");
  EXPECT_EQ(result.AttributeString, "(x-version=1.2)");
  EXPECT_TRUE(result.Attributes.empty());
}

TEST(ServiceAttributeSearchResultTest, PrintsThatNothingWasParsed) {
  EXPECT_EQ(SKelServiceAttributeSearchResult("(a=1)").ToString(),
            "AttributeString = (a=1)\nAttributes: no attributes parsed\n");
  EXPECT_EQ(SKelServiceAttributeSearchResult().ToString(),
            "AttributeString = \nAttributes: no attributes parsed\n");
}

TEST(ServiceAttributeSearchResultTest, PrintsTheNumbersOfTheTags) {
  SKelServiceAttributeSearchResult result("(x-version=4.2)");
  result.Attributes[IKelServiceType::ATTR_VERSION] = "4.2";
  EXPECT_EQ(result.ToString(),
            "AttributeString = (x-version=4.2)\n"
            "Attributes: 1 parsed\n"
            "  '1' = '4.2'\n");
}

TEST(ServiceAttributeSearchResultTest, OrdersAttributesByTheNumbersOfTheirTags) {
  SKelServiceAttributeSearchResult result("(x-server-ns-ips=a),(x-ip-addresses=b),(x-version=c)");
  result.Attributes[IKelServiceType::ATTR_SERVER_NS_IPS] = "a";
  result.Attributes[IKelServiceType::ATTR_IP_ADDRESSES] = "b";
  result.Attributes[IKelServiceType::ATTR_VERSION] = "";
  EXPECT_EQ(result.ToString(),
            "AttributeString = (x-server-ns-ips=a),(x-ip-addresses=b),(x-version=c)\n"
            "Attributes: 3 parsed\n"
            "  '1' = ''\n"
            "  '2' = 'b'\n"
            "  '24' = 'a'\n");
}

TEST(ServiceAttributeSearchResultTest, IsAPlainValue) {
  EXPECT_FALSE(std::is_polymorphic_v<SKelServiceAttributeSearchResult>);
  EXPECT_TRUE((std::is_same_v<decltype(&SKelServiceAttributeSearchResult::ToString),
                              std::string (SKelServiceAttributeSearchResult::*)()>));
  SKelServiceAttributeSearchResult original("a");
  SKelServiceAttributeSearchResult copy = original;
  copy.Attributes[IKelServiceType::ATTR_VERSION] = "1";
  EXPECT_TRUE(original.Attributes.empty());
}

}  // namespace
}  // namespace kelsd
