// Why the daemon could not be started, where the library starts its program itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "integration/service/service_fixture.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

using testing::HasSubstr;

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";

class StartFailure : public ServiceTest {
 protected:
  static bool Running() {
    bool running = true;
    EXPECT_THAT(CKelSLPService::IsSLPDRunning(running), Succeeded());
    return running;
  }
};

TEST_F(StartFailure, TellsTheDaemonsLastWords) {
  const slp::support::SlpPeer other([](const auto&) { return std::vector<slp::support::PeerReply>(); },
                                    {.port = port()});
  const SResult result = CKelSLPService::StartSLPD();
  EXPECT_EQ(result.GetErrorCode(), SResult::ERR_SLPD_START);
  EXPECT_EQ(result.GetErrorDebug(), kAgent + "StartSLPD StartService");
  EXPECT_THAT(result.GetErrorDetail(), HasSubstr("127.0.0.1")) << result.ToString();
  EXPECT_THAT(result.GetErrorDetail(), HasSubstr("Address already in use"));
  EXPECT_FALSE(Running());
}

TEST_F(StartFailure, TellsOfAProgramThatIsMissing) {
  const std::string missing = File("missing");
  setenv("KELSD_SLPD", missing.c_str(), 1);
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START, missing + ": No such file or directory",
                                 kAgent + "StartSLPD StartService")));
  EXPECT_FALSE(Running());
}

}  // namespace
}  // namespace kelsd::integration
