#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPService.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "service/service_impl.h"
#include "support/core_fixture.h"
#include "support/fake_platform/environment.h"

namespace kelsd {
namespace {

static_assert(std::is_base_of_v<CKelSLP, CKelSLPService>);

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";

/// The facade uses this system's own daemon: what is called here ends before that.
class ServiceFacade : public CoreFixture {
 protected:
  ServiceFacade() { ClearEnvironment("OpenSLPConfig"); }
};

CKelServiceTypeZDREST SomeType() {
  return CKelServiceTypeZDREST(SKelServiceAttributeSearchResult());
}

class BrokenType : public CKelServiceTypeZDREST {
 public:
  BrokenType() : CKelServiceTypeZDREST(SomeType()) {}
  std::string GetServiceURL() const override { throw std::bad_alloc(); }
};

TEST_F(ServiceFacade, EveryRegistrationNeedsAnInitialisedCore) {
  const SResult refused(SResult::ERR_NOT_INITIALIZED, "", kAgent + "RegisterService");
  EXPECT_THAT(CKelSLPService::RegisterService("service:x://a", 60, std::map<std::string, std::string>{}, {}),
              SameResult(refused));
  EXPECT_THAT(CKelSLPService::RegisterService("service:x://a", 60, {{IKelServiceType::ATTR_VERSION, "1"}},
                                              std::vector<std::string>{}),
              SameResult(refused));
  EXPECT_THAT(CKelSLPService::RegisterService(SomeType()), SameResult(refused));
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPService::GetSLPServiceConfig(config, errors),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED, "", kAgent + "GetSLPServiceConfig")));
}

TEST_F(ServiceFacade, ForwardsToTheAgent) {
  InitializeCore();
  const auto advice = [](const std::string& trail) {
    return SameResult(
        SResult(SResult::ERR_ENV_NOT_SET,
                "Create an environment variable with name 'OpenSLPConfig' that contains the path to the SLP "
                "configuration file e.g. '" +
                    CKelSLPServiceImpl::Instance().GetDefaultEnvConfigFileName() + "'.",
                kAgent + trail + " " + kAgent + "GetSLPEnvConfigFileName"));
  };
  const std::string validate = " " + kAgent + "ValidateSLPEnvironmentConfigFile";
  EXPECT_THAT(CKelSLPService::RegisterService("service:x://a", 60, std::map<std::string, std::string>{}, {}),
              advice("RegisterService" + validate));
  EXPECT_THAT(CKelSLPService::DeregisterService("service:x://a"), advice("DeregisterService" + validate));
  EXPECT_THAT(CKelSLPService::DeregisterService(SomeType()), advice("DeregisterService" + validate));
  EXPECT_THAT(CKelSLPService::SetSLPServiceConfig(CKelSLPServiceConfig()),
              advice("SetSLPServiceConfig " + kAgent + "SetSLPServiceConfigInternal"));
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPService::GetSLPServiceConfig(config, errors), advice("GetSLPServiceConfig" + validate));
  EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(0),
              SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                                 "Service registration check interval must be greater than zero (0).",
                                 kAgent + "SetRegistrationCheckInterval")));
  EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(500), SameResult(kSuccess));
  CKelSLPService::SetReRegistrationFailedCallback([](const std::string&, const SResult&) {});
  CKelSLPService::SetReRegistrationFailedCallback(nullptr);
}

TEST_F(ServiceFacade, LetsNoExceptionOut) {
  InitializeCore();
  const SResult out_of_memory(SResult::ERR_OUT_OF_MEMORY, "std::bad_alloc");
  EXPECT_THAT(CKelSLPService::RegisterService(BrokenType()), SameResult(out_of_memory));
  EXPECT_THAT(CKelSLPService::DeregisterService(BrokenType()), SameResult(out_of_memory));
}

}  // namespace
}  // namespace kelsd
