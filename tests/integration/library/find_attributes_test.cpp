#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "integration/library/library_fixture.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd::integration {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FindAttributes : public LibraryTest {
 protected:
  void SetUp() override { Serve(FamilyServices()); }
};

TEST_F(FindAttributes, ReadsAServerIntoItsType) {
  const CKelServiceTypeZDREST asked("127.0.0.1:8080", 300);
  SKelServiceAttributeSearchResult found;
  ASSERT_THAT(CKelSLPClient::FindAttributes(found, asked, "127.0.0.1"), Succeeded());

  const CKelServiceTypeZDREST server(found);
  EXPECT_EQ(server.GetAttrVersion(), "4.2");
  EXPECT_EQ(server.GetAttrServerName(), "srv1");
  EXPECT_EQ(server.GetAttrServerNSName(), "ns1");
  EXPECT_EQ(server.GetAttrServerNSPort(), 8081);
  EXPECT_EQ(server.GetAttrZDConnectionStatus(), CKelServiceTypeZDREST::connected);
  EXPECT_THAT(server.GetAttrIPAddresses(), ElementsAre("10.0.0.1", "10.0.0.2", "10.0.0.3"));
  EXPECT_THAT(server.GetAttrServerNSIpAddresses(), ElementsAre("10.0.0.8", "10.0.0.9"));
}

TEST_F(FindAttributes, ReadsATerminalByMulticast) {
  const CKelServiceTypeZDTerminalREST asked("127.0.0.1:8070", 300);
  SKelServiceAttributeSearchResult found;
  ASSERT_THAT(CKelSLPClient::FindAttributes(found, asked, ""), Succeeded());

  const CKelServiceTypeZDTerminalREST terminal(found);
  EXPECT_EQ(CKelServiceTypeZDTerminalREST::ToString(terminal.GetAttrServerMode()), "MAIN");
  EXPECT_EQ(CKelServiceTypeZDTerminalREST::ToString(terminal.GetAttrOperation()), "SERVER");
  EXPECT_TRUE(terminal.GetAttrServerClusterStatus());
  EXPECT_FALSE(terminal.GetAttrServicediscoveryIsDa());
}

TEST_F(FindAttributes, ReadsOnlyTheTagsAskedFor) {
  SKelServiceAttributeSearchResult found;
  ASSERT_THAT(CKelSLPClient::FindAttributes(found, "service:zdrest.tamro:http://127.0.0.1:8080",
                                            std::vector<std::string>{"x-version", "x-operation"}, {"tamro"},
                                            "127.0.0.1"),
              Succeeded());
  EXPECT_EQ(found.AttributeString, "(x-version=4.2)");
  EXPECT_EQ(found.Attributes,
            (std::map<IKelServiceType::EAttr, std::string>{{IKelServiceType::ATTR_VERSION, "4.2"}}));
}

TEST_F(FindAttributes, ReadsAllWithoutTags) {
  SKelServiceAttributeSearchResult found;
  ASSERT_THAT(CKelSLPClient::FindAttributes(found, "service:zdrest.tamro:http://127.0.0.1:8080",
                                            std::vector<std::string>{}, {"tamro"}, "127.0.0.1"),
              Succeeded());
  EXPECT_THAT(found.AttributeString, HasSubstr("(x-ip-addresses=10.0.0.1\\2C10.0.0.2\\2C10.0.0.3)"));
  EXPECT_THAT(found.AttributeString, HasSubstr("(x-server-name=srv1)"));
  EXPECT_TRUE(found.Attributes.empty());
}

}  // namespace
}  // namespace kelsd::integration
