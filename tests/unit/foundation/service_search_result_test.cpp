#include "kelsd/SKelServiceSearchResult.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/grouping_locale.h"

namespace kelsd {
namespace {

SKelServiceSearchResult Example() {
  return {"service:zdrest.tamro:http://10.0.0.5:8080/api",
          300,
          "service:zdrest.tamro:http",
          "10.0.0.5",
          8080,
          "ipx",
          "/api"};
}

TEST(ServiceSearchResultTest, ConstructorFillsTheMembersOfTheSameMeaning) {
  const SKelServiceSearchResult result = Example();
  EXPECT_EQ(result.URL, "service:zdrest.tamro:http://10.0.0.5:8080/api");
  EXPECT_EQ(result.Lifetime, 300);
  EXPECT_EQ(result.TypeString, "service:zdrest.tamro:http");
  EXPECT_EQ(result.Host, "10.0.0.5");
  EXPECT_EQ(result.Port, 8080U);
  EXPECT_EQ(result.NetFamily, "ipx");
  EXPECT_EQ(result.ServicePart, "/api");
}

TEST(ServiceSearchResultTest, PrintsItsMembersInTheOrderOfReading) {
  EXPECT_EQ(Example().ToString(),
            "URL         = service:zdrest.tamro:http://10.0.0.5:8080/api\n"
            "TypeString  = service:zdrest.tamro:http\n"
            "Host        = 10.0.0.5\n"
            "Port        = 8080\n"
            "ServicePart = /api\n"
            "Lifetime    = 300\n"
            "NetFamily   = ipx\n");
}

TEST(ServiceSearchResultTest, DefaultIsEmpty) {
  EXPECT_EQ(SKelServiceSearchResult().ToString(),
            "URL         = \n"
            "TypeString  = \n"
            "Host        = \n"
            "Port        = 0\n"
            "ServicePart = \n"
            "Lifetime    = 0\n"
            "NetFamily   = \n");
}

TEST(ServiceSearchResultTest, PrintsNumbersInPlainDecimal) {
  const test::GroupingLocale locale;
  SKelServiceSearchResult result;
  result.Port = 4294967295U;
  result.Lifetime = 65535;
  EXPECT_THAT(result.ToString(), testing::HasSubstr("Port        = 4294967295\n"));
  EXPECT_THAT(result.ToString(), testing::HasSubstr("Lifetime    = 65535\n"));
}

TEST(ServiceSearchResultTest, ComparesTheUrlOnly) {
  const SKelServiceSearchResult first("service:a://h", 1, "service:a", "h", 2, "f", "/p");
  const SKelServiceSearchResult same("service:a://h", 5, "service:b", "i", 6, "g", "/q");
  const SKelServiceSearchResult later("service:a://i", 1, "service:a", "h", 2, "f", "/p");
  EXPECT_TRUE(first == same);
  EXPECT_FALSE(first != same);
  EXPECT_FALSE(first < same);
  EXPECT_FALSE(same < first);
  EXPECT_FALSE(first == later);
  EXPECT_TRUE(first != later);
  EXPECT_TRUE(first < later);
  EXPECT_FALSE(later < first);
}

TEST(ServiceSearchResultTest, ComparesBytes) {
  EXPECT_FALSE(SKelServiceSearchResult("service:a") == SKelServiceSearchResult("service:A"));
  EXPECT_TRUE(SKelServiceSearchResult("service:A") < SKelServiceSearchResult("service:a"));
  EXPECT_TRUE(SKelServiceSearchResult("a") < SKelServiceSearchResult("\xC3\xA9"));
}

TEST(ServiceSearchResultTest, CanBeSortedAndRepeatsRemoved) {
  std::vector<SKelServiceSearchResult> results = {{"c", 1}, {"a", 2}, {"b", 3}, {"a", 4}};
  std::stable_sort(results.begin(), results.end());
  results.erase(std::unique(results.begin(), results.end()), results.end());
  EXPECT_EQ(results, (std::vector<SKelServiceSearchResult>{{"a"}, {"b"}, {"c"}}));
  EXPECT_EQ(results.front().Lifetime, 2);
}

TEST(ServiceSearchResultTest, IsAPlainValue) {
  EXPECT_FALSE(std::is_polymorphic_v<SKelServiceSearchResult>);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<SKelServiceSearchResult>);
  EXPECT_TRUE((std::is_same_v<decltype(&SKelServiceSearchResult::ToString),
                              std::string (SKelServiceSearchResult::*)()>));
  SKelServiceSearchResult copy = Example();
  copy.URL = "changed";
  EXPECT_EQ(Example().URL, "service:zdrest.tamro:http://10.0.0.5:8080/api");
  const SKelServiceSearchResult moved = std::move(copy);
  EXPECT_EQ(moved.URL, "changed");
}

}  // namespace
}  // namespace kelsd
