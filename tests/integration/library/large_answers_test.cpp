// Answers that do not fit into a datagram come whole all the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "integration/library/library_fixture.h"

namespace kelsd::integration {
namespace {

constexpr int kServices = 300;
constexpr const char* kType = "service:zdrest.tamro:http";

std::vector<Announced> ManyServices() {
  std::vector<Announced> services;
  for (int i = 0; i < kServices; ++i) {
    services.push_back({std::string(kType) + "://127.0.0.1:" + std::to_string(10000 + i)});
  }
  return services;
}

std::vector<std::string> ManyUrls() {
  std::vector<std::string> urls;
  for (const Announced& service : ManyServices()) {
    urls.push_back(service.url);
  }
  std::sort(urls.begin(), urls.end());
  return urls;
}

using LargeAnswers = LibraryTest;

TEST_F(LargeAnswers, FindsAllServicesOfAnOverflowingReplyByUnicast) {
  Serve(ManyServices());
  std::vector<SKelServiceSearchResult> found;
  ASSERT_THAT(CKelSLPClient::FindServices(found, kType, {"tamro"}, "", "127.0.0.1"), Succeeded());
  EXPECT_EQ(Urls(found), ManyUrls());
}

TEST_F(LargeAnswers, FindsAllServicesOfAnOverflowingReplyByMulticast) {
  Serve(ManyServices());
  std::vector<SKelServiceSearchResult> found;
  ASSERT_THAT(CKelSLPClient::FindServices(found, kType, {"tamro"}, "", ""), Succeeded());
  EXPECT_EQ(Urls(found), ManyUrls());
}

TEST_F(LargeAnswers, ReadsAnAttributeListOf20KilobytesWhole) {
  std::string long_value;
  for (int i = 0; i < 2000; ++i) {
    long_value += "part" + std::to_string(100000 + i);
  }
  ASSERT_EQ(long_value.size(), 20000U);
  const std::string url = std::string(kType) + "://127.0.0.1:8080";
  Serve({{url, "tamro", {"x-version=4.2", "x-server-name=" + long_value}}});
  for (const std::string address : {"127.0.0.1", ""}) {
    SKelServiceAttributeSearchResult found;
    ASSERT_THAT(CKelSLPClient::FindAttributes(found, url, std::vector<std::string>{"x-server-name"},
                                              {"tamro"}, address),
                Succeeded());
    EXPECT_EQ(found.AttributeString, "(x-server-name=" + long_value + ")") << "address '" << address << "'";
    EXPECT_EQ(found.Attributes[IKelServiceType::ATTR_SERVER_NAME], long_value);
  }
}

}  // namespace
}  // namespace kelsd::integration
