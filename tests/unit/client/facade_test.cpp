#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using testing::ElementsAre;

static_assert(std::is_base_of_v<CKelSLP, CKelSLPClient>);
static_assert(std::has_virtual_destructor_v<CKelSLP>);
static_assert(sizeof(CKelSLPClient) == sizeof(void*), "a facade has no data");

class ClientFacade : public CoreFixture {};

TEST_F(ClientFacade, ForwardsServiceSearches) {
  InitializeCore();
  std::vector<SKelServiceSearchResult> results;
  EXPECT_THAT(CKelSLPClient::FindServices(results, "service:x", {"lab"}, "(a=1)", "10.0.0.5"),
              SameResult(kSuccess));
  EXPECT_THAT(CKelSLPClient::FindServices(results, CKelServiceTypeZDREST("10.0.0.5:8080", 60), "(a=2)", ""),
              SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(),
              ElementsAre("SLPOpen(en,0)=#3", "SLPAssociateIP(#3,10.0.0.5)",
                          "SLPFindSrvs(#3,service:x,LAB,(a=1))", "SLPClose(#3)", "SLPOpen(en,0)=#4",
                          "SLPFindSrvs(#4,service:zdrest.tamro:http,TAMRO,(a=2))", "SLPClose(#4)"));
}

TEST_F(ClientFacade, ForwardsAttributeSearches) {
  InitializeCore();
  SKelServiceAttributeSearchResult result;
  const CKelServiceTypeZDREST type("10.0.0.5:8080", 60);
  EXPECT_THAT(CKelSLPClient::FindAttributes(result, "service:x://h", std::vector<std::string>{"x-version"},
                                            {"lab"}, "10.0.0.5"),
              SameResult(kSuccess));
  EXPECT_THAT(CKelSLPClient::FindAttributes(
                  result, "service:x://h",
                  std::vector<IKelServiceType::EAttr>{IKelServiceType::ATTR_OPERATION}, {}, ""),
              SameResult(kSuccess));
  EXPECT_THAT(CKelSLPClient::FindAttributes(result, type, "10.0.0.6"), SameResult(kSuccess));
  const std::vector<std::string> calls = scripted_slp::Calls("SLPFindAttrs");
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0], "SLPFindAttrs(#3,service:x://h,LAB,x-version)");
  EXPECT_EQ(calls[1], "SLPFindAttrs(#4,service:x://h,,x-operation)");
  EXPECT_TRUE(calls[2].starts_with("SLPFindAttrs(#5," + type.GetServiceURL() + ",TAMRO,x-version,"))
      << calls[2];
  EXPECT_THAT(scripted_slp::Calls("SLPAssociateIP"),
              ElementsAre("SLPAssociateIP(#3,10.0.0.5)", "SLPAssociateIP(#5,10.0.0.6)"));
}

TEST_F(ClientFacade, ForwardsTheClientConfiguration) {
  InitializeCore();
  CKelSLPClientConfig config;
  ASSERT_TRUE(config.SetMTU(1000).IsOk());
  EXPECT_THAT(CKelSLPClient::SetSLPClientConfig(config), SameResult(kSuccess));
  CKelSLPClientConfig read;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPClient::GetSLPClientConfig(read, errors), SameResult(kSuccess));
  EXPECT_TRUE(read.EqualTo(config));
  EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(ClientFacade, InheritsInitialisation) {
  EXPECT_THAT(CKelSLPClient::Initialize(), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLPClient::IsInitialized());
}

}  // namespace
}  // namespace kelsd
