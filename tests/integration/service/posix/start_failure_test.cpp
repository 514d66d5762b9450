// Why the daemon could not be started, where the library starts its program itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "integration/service/service_fixture.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

auto DidNotStart(const std::string& reason) {
  return SameResult(
      SResult(SResult::ERR_SLPD_START, reason, "kelsd::CKelSLPServiceImpl::StartSLPD StartService"));
}

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
  EXPECT_THAT(
      CKelSLPService::StartSLPD(),
      DidNotStart("slpd: cannot serve UDP 127.0.0.1:" + std::to_string(port()) +
                  " (lo): Address already in use; another SLP agent may be running: stop it, or choose "
                  "another port with net.slp.port"));
  EXPECT_FALSE(Running());
}

TEST_F(StartFailure, TellsOfAnOptionThatTheProgramDoesNotKnow) {
  const std::string program = File("with_a_wrong_option");
  std::ofstream(program) << "#!/bin/sh\nexec '" << std::getenv("KELSD_SLPD") << "' --bogus \"$@\"\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  setenv("KELSD_SLPD", program.c_str(), 1);
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              DidNotStart("slpd: The following argument was not expected: --bogus (slpd --help shows what is "
                          "possible)"));
  EXPECT_FALSE(Running());
}

TEST_F(StartFailure, TellsOfAProgramThatIsMissing) {
  const std::string missing = File("missing");
  setenv("KELSD_SLPD", missing.c_str(), 1);
  EXPECT_THAT(CKelSLPService::StartSLPD(), DidNotStart(missing + ": No such file or directory"));
  EXPECT_FALSE(Running());
}

}  // namespace
}  // namespace kelsd::integration
