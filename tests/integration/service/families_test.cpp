// All types of the family through their whole life with the real daemon.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "integration/service/service_fixture.h"
#include "kelsd/CKelServiceTypeServiceHost.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd::integration {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned short kLifetime = 300;

class Families : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceTest::SetUp();
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  }

  template <typename Type>
  Type Read(const Type& asked) {
    SKelServiceAttributeSearchResult found;
    EXPECT_THAT(CKelSLPClient::FindAttributes(found, asked, "127.0.0.1"), Succeeded());
    return Type(found);
  }
};

TEST_F(Families, ServesAServer) {
  CKelServiceTypeZDREST server("127.0.0.1:8080", kLifetime);
  server.SetAttrServerName("srv, (first)");
  server.SetAttrServerNSPort(8081);
  server.SetAttrServerNSIpAddresses({"10.0.0.9", "10.0.0.8"});
  server.SetAttrZDConnectionStatus(CKelServiceTypeZDREST::connected);
  ASSERT_THAT(CKelSLPService::RegisterService(server), Succeeded()) << "starts the daemon";
  EXPECT_THAT(Find(server.GetTypeString()), ElementsAre("service:zdrest.tamro:http://127.0.0.1:8080"));

  const CKelServiceTypeZDREST found = Read(CKelServiceTypeZDREST("127.0.0.1:8080", kLifetime));
  EXPECT_EQ(found.GetAttrServerName(), "srv, (first)");
  EXPECT_EQ(found.GetAttrServerNSPort(), 8081);
  EXPECT_EQ(found.GetAttrServerNSIpAddresses(), server.GetAttrServerNSIpAddresses());
  EXPECT_EQ(found.GetAttrZDConnectionStatus(), CKelServiceTypeZDREST::connected);

  server.SetAttrServerName("srv2");
  ASSERT_THAT(CKelSLPService::RegisterService(server), Succeeded());
  EXPECT_EQ(Read(CKelServiceTypeZDREST("127.0.0.1:8080", kLifetime)).GetAttrServerName(), "srv2");
  EXPECT_EQ(Find(server.GetTypeString()).size(), 1U);

  EXPECT_THAT(CKelSLPService::DeregisterService(server), Succeeded());
  EXPECT_THAT(Find(server.GetTypeString()), IsEmpty());
  EXPECT_EQ(DaemonStarts(), 1);
}

// What a search tells of services.

std::vector<SKelServiceSearchResult> FoundIn(const std::vector<std::string>& scopes,
                                             const std::string& type_string) {
  std::vector<SKelServiceSearchResult> found;
  EXPECT_THAT(CKelSLPClient::FindServices(found, type_string, scopes, "", "127.0.0.1"), Succeeded());
  return found;
}

// A service that was registered a moment ago for `lifetime` seconds.
auto JustRegistered(const std::string& url, int lifetime) {
  constexpr int kMoment = 20;
  return testing::AllOf(
      testing::Field(&SKelServiceSearchResult::URL, url),
      testing::Field(&SKelServiceSearchResult::Lifetime,
                     testing::AllOf(testing::Gt(lifetime - kMoment), testing::Le(lifetime))));
}

TEST_F(Families, ServesWhatARecordSays) {
  WriteConfiguration("net.slp.useScopes = TAMRO,LAB\n");
  const CKelServiceTypeZDREST server("127.0.0.1:8080", kLifetime);
  ASSERT_THAT(CKelSLPService::RegisterService(server), Succeeded());
  EXPECT_THAT(FoundIn({"tamro"}, server.GetTypeString()),
              ElementsAre(JustRegistered(server.GetServiceURL(), kLifetime)));
  EXPECT_THAT(FoundIn({"lab"}, server.GetTypeString()), IsEmpty());
}

TEST_F(Families, ServesWhatTagsSay) {
  WriteConfiguration("net.slp.useScopes = TAMRO,LAB\n");
  const CKelServiceTypeZDREST server("127.0.0.1:8080", kLifetime);
  constexpr unsigned short kOtherLifetime = 200;
  const std::vector<std::string> lab{"lab"};
  ASSERT_THAT(CKelSLPService::RegisterService(server.GetServiceURL(), kOtherLifetime,
                                              {{IKelServiceType::ATTR_SERVER_NAME, "by tags"}}, lab),
              Succeeded());
  EXPECT_THAT(FoundIn(lab, server.GetTypeString()),
              ElementsAre(JustRegistered(server.GetServiceURL(), kOtherLifetime)));
  EXPECT_THAT(FoundIn({"tamro"}, server.GetTypeString()), IsEmpty());
  SKelServiceAttributeSearchResult found;
  ASSERT_THAT(CKelSLPClient::FindAttributes(found, server.GetServiceURL(),
                                            std::vector{IKelServiceType::ATTR_SERVER_NAME}, lab, "127.0.0.1"),
              Succeeded());
  EXPECT_EQ(found.Attributes[IKelServiceType::ATTR_SERVER_NAME], "by tags");
}

TEST_F(Families, ServesATerminal) {
  CKelServiceTypeZDTerminalREST terminal("127.0.0.1:8070", kLifetime);
  terminal.SetAttrServerClusterStatus(true);
  terminal.SetAttrOperation(CKelServiceTypeZDTerminalREST::OPERATION_SERVER);
  ASSERT_THAT(CKelSLPService::RegisterService(terminal), Succeeded());
  EXPECT_THAT(Find(terminal.GetTypeString()), ElementsAre("service:terminal.tamro:http://127.0.0.1:8070"));

  const CKelServiceTypeZDTerminalREST found =
      Read(CKelServiceTypeZDTerminalREST("127.0.0.1:8070", kLifetime));
  EXPECT_TRUE(found.GetAttrServerClusterStatus());
  EXPECT_EQ(found.GetAttrOperation(), terminal.GetAttrOperation());

  terminal.SetAttrServerClusterStatus(false);
  ASSERT_THAT(CKelSLPService::RegisterService(terminal), Succeeded());
  EXPECT_FALSE(Read(CKelServiceTypeZDTerminalREST("127.0.0.1:8070", kLifetime)).GetAttrServerClusterStatus());

  EXPECT_THAT(CKelSLPService::DeregisterService(terminal.GetServiceURL()), Succeeded());
  EXPECT_THAT(Find(terminal.GetTypeString()), IsEmpty());
}

TEST_F(Families, ServesHosts) {
  CKelServiceTypeServiceHost render("render", "127.0.0.1:9000", kLifetime);
  render.SetAttrMode("batch");
  const CKelServiceTypeServiceHost print("print", "127.0.0.1:9001", kLifetime);
  ASSERT_THAT(CKelSLPService::RegisterService(render), Succeeded());
  ASSERT_THAT(CKelSLPService::RegisterService(print), Succeeded());
  const std::string all = CKelServiceTypeServiceHost::GetAbstractTypeString();
  EXPECT_THAT(Find(all), ElementsAre("service:servicehost.tamro:print://127.0.0.1:9001",
                                     "service:servicehost.tamro:render://127.0.0.1:9000"));

  const auto mode = [&] {
    SKelServiceAttributeSearchResult found;
    EXPECT_THAT(CKelSLPClient::FindAttributes(found, render, "127.0.0.1"), Succeeded());
    return found.Attributes[IKelServiceType::ATTR_SERVICEHOST_MODE];
  };
  EXPECT_EQ(mode(), "batch");
  render.SetAttrMode("interactive");
  ASSERT_THAT(CKelSLPService::RegisterService(render), Succeeded());
  EXPECT_EQ(mode(), "interactive");

  EXPECT_THAT(CKelSLPService::DeregisterService(render), Succeeded());
  EXPECT_THAT(Find(all), ElementsAre("service:servicehost.tamro:print://127.0.0.1:9001"));
  EXPECT_THAT(CKelSLPService::DeregisterService(print), Succeeded());
  EXPECT_THAT(Find(all), IsEmpty());
}

}  // namespace
}  // namespace kelsd::integration
