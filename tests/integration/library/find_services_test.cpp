#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "integration/library/library_fixture.h"
#include "kelsd/CKelServiceTypeServiceHost.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd::integration {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kServer1 = "service:zdrest.tamro:http://127.0.0.1:8080";
constexpr const char* kServer2 = "service:zdrest.tamro:http://127.0.0.1:8090";
constexpr const char* kTerminal = "service:terminal.tamro:http://127.0.0.1:8070";
constexpr const char* kRender = "service:servicehost.tamro:render://127.0.0.1:9000";
constexpr const char* kPrint = "service:servicehost.tamro:print://127.0.0.1:9001";

class FindServices : public LibraryTest {
 protected:
  void SetUp() override { Serve(FamilyServices()); }

  // What a unicast search finds, so that tests of filters and scopes need no waiting for quiet rounds.
  std::vector<std::string> Ask(const std::string& type, const std::vector<std::string>& scopes,
                               const std::string& filter) {
    std::vector<SKelServiceSearchResult> found;
    EXPECT_THAT(CKelSLPClient::FindServices(found, type, scopes, filter, "127.0.0.1"), Succeeded());
    return Urls(found);
  }
};

TEST_F(FindServices, FindsEachTypeOfTheFamilyByMulticast) {
  std::vector<SKelServiceSearchResult> found;
  ASSERT_THAT(CKelSLPClient::FindServices(found, CKelServiceTypeZDREST("", 60), "", ""), Succeeded());
  EXPECT_THAT(Urls(found), ElementsAre(kServer1, kServer2));
  EXPECT_EQ(found[0].TypeString, "service:zdrest.tamro:http");
  EXPECT_EQ(found[0].Host, "127.0.0.1");
  EXPECT_EQ(found[0].Port, 8080U);
  EXPECT_EQ(found[0].Lifetime, 65535);

  ASSERT_THAT(CKelSLPClient::FindServices(found, CKelServiceTypeZDTerminalREST("", 60), "", ""), Succeeded());
  EXPECT_THAT(Urls(found), ElementsAre(kTerminal));

  ASSERT_THAT(CKelSLPClient::FindServices(found, CKelServiceTypeServiceHost("render", "", 60), "", ""),
              Succeeded());
  EXPECT_THAT(Urls(found), ElementsAre(kRender));
}

TEST_F(FindServices, FindsAllConcreteTypesByTheAbstractOne) {
  EXPECT_THAT(Ask(CKelServiceTypeServiceHost::GetAbstractTypeString(), {"tamro", "lab"}, ""),
              ElementsAre(kPrint, kRender));
}

TEST_F(FindServices, LooksOnlyIntoTheScopesAskedFor) {
  const std::string hosts = CKelServiceTypeServiceHost::GetAbstractTypeString();
  EXPECT_THAT(Ask(hosts, {"tamro"}, ""), ElementsAre(kRender));
  EXPECT_THAT(Ask(hosts, {" Lab "}, ""), ElementsAre(kPrint));
  EXPECT_THAT(Ask(hosts, {}, ""), ElementsAre(kPrint, kRender)) << "no scopes: the configured ones";
}

TEST_F(FindServices, NarrowsByEachFilterOfTheLibrary) {
  struct Row {
    const char* what;
    std::string filter;
    std::vector<std::string> found;
  };
  const std::vector<Row> rows = {
      {"first address of a list", IKelServiceType::GetIpAddressesSearchFilter("10.0.0.1"), {kServer1}},
      {"middle address of a list", IKelServiceType::GetIpAddressesSearchFilter("10.0.0.2"), {kServer1}},
      {"last address of a list", IKelServiceType::GetIpAddressesSearchFilter("10.0.0.3"), {kServer1}},
      {"the only address", IKelServiceType::GetIpAddressesSearchFilter("10.0.0.22"), {kServer2}},
      {"part of an address", IKelServiceType::GetIpAddressesSearchFilter("0.0.2"), {}},
      {"address and name", IKelServiceType::GetNSIpServerNameSearchFilter("10.0.0.2", "srv1"), {kServer1}},
      {"address and another's name", IKelServiceType::GetNSIpServerNameSearchFilter("10.0.0.2", "srv2"), {}},
      {"any address and name",
       IKelServiceType::GetIpsServerNameSearchFilter({"10.9.9.9", "10.0.0.22", "10.0.0.1"}, "srv2"),
       {kServer2}},
      {"naming service", IKelServiceType::GetNamingServiceSearchFilter("NS1"), {kServer1}},
      {"naming service and name",
       IKelServiceType::GetNsNameServerNameSearchFilter("ns2", "srv2"),
       {kServer2}},
      {"any naming service and name",
       IKelServiceType::GetNSIpsServerNameSearchFilter({"ns1", "ns2"}, "srv1"),
       {kServer1}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Ask("service:zdrest.tamro:http", {"tamro"}, row.filter), row.found) << row.what;
  }
}

TEST_F(FindServices, FindsNothingOfATypeThatNobodyOffers) {
  EXPECT_THAT(Ask("service:printer.tamro:lpr", {"tamro"}, ""), IsEmpty());
}

TEST_F(FindServices, ReportsAFilterThatDoesNotParse) {
  std::vector<SKelServiceSearchResult> found(1);
  const SResult result =
      CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "(&(a=1)", "127.0.0.1");
  EXPECT_EQ(result.GetErrorCode(), SResult::ERR_PARSE_ERROR) << result.ToString();
  EXPECT_EQ(found.size(), 1U);
}

TEST_F(FindServices, ReportsAScopeThatTheDaemonDoesNotServe) {
  std::vector<SKelServiceSearchResult> found(1);
  const SResult result =
      CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"elsewhere"}, "", "127.0.0.1");
  EXPECT_EQ(result.GetErrorCode(), SResult::ERR_UNKNOWN) << result.ToString();
  EXPECT_EQ(found.size(), 1U);
}

}  // namespace
}  // namespace kelsd::integration
