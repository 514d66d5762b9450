// A daemon that takes a service once and then refuses it, played on the wire by the test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "integration/service/service_fixture.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

using slp::support::PeerReply;
using slp::support::PeerRequest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";
// A service of this lifetime is due a second after its last registration, and after a failure at every pass.
constexpr unsigned short kLifetime = 2;
constexpr int kIntervalMs = 100;
// Longer than several passes: enough for a renewal too many, or a second report, to show.
constexpr milliseconds kQuiet{2500};
constexpr int kFailuresToGiveUp = 5;

class RefusingDaemon : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceTest::SetUp();
    daemon().RunWithoutServing(port());
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
    ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(kIntervalMs), Succeeded());
    CKelSLPService::SetReRegistrationFailedCallback([this](std::string url, SResult result) {
      const std::lock_guard guard(mutex_);
      reports_.emplace_back(std::move(url), std::move(result));
    });
  }

  // The daemon is this process: there is none for the library to stop.
  void TearDown() override {
    EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
    CKelSLPService::SetReRegistrationFailedCallback({});
  }

  /// Takes the first registration, then refuses so many.
  void RefuseAfterTheFirst(int refusals) {
    const std::lock_guard guard(mutex_);
    refusals_ = refusals;
  }
  SResult Register() {
    return CKelSLPService::RegisterService(kUrl, kLifetime, std::map<std::string, std::string>(), {});
  }
  int Registrations() {
    const std::lock_guard guard(mutex_);
    return registrations_;
  }
  std::vector<std::pair<std::string, SResult>> Reports() {
    const std::lock_guard guard(mutex_);
    return reports_;
  }

 private:
  std::vector<PeerReply> Answer(const PeerRequest& request) {
    if (!request.message.ok() || !std::holds_alternative<slp::SrvReg>(request.message->body)) {
      return {};
    }
    const std::lock_guard guard(mutex_);
    ++registrations_;
    const bool refused = registrations_ > 1 && registrations_ <= 1 + refusals_;
    return {{slp::support::EncodedReplyTo(
        request, slp::SrvAck{refused ? slp::Error::kInvalidRegistration : slp::Error::kOk})}};
  }

  std::mutex mutex_;
  int refusals_ = 0;
  int registrations_ = 0;
  std::vector<std::pair<std::string, SResult>> reports_;
  const slp::support::SlpPeer peer_{[this](const PeerRequest& request) { return Answer(request); },
                                    {.port = port(), .group = false}};
};

TEST_F(RefusingDaemon, LeadsToOneReportAfterFiveFailures) {
  RefuseAfterTheFirst(INT_MAX - 1);
  ASSERT_THAT(Register(), Succeeded());
  ASSERT_TRUE(WaitUntil(kSlack, [&] { return !Reports().empty(); }));
  std::this_thread::sleep_for(kQuiet);
  EXPECT_THAT(
      Reports(),
      ElementsAre(Pair(kUrl, SameResult(SResult(SResult::ERR_INVALID_REGISTRATION, "",
                                                "kelsd::CKelSLPServiceImpl::ReRegisterService SLPReg")))));
  EXPECT_EQ(Registrations(), 1 + kFailuresToGiveUp) << "it is given up";
}

TEST_F(RefusingDaemon, LeadsToNoneAfterFourFailuresAndASuccess) {
  RefuseAfterTheFirst(kFailuresToGiveUp - 1);
  ASSERT_THAT(Register(), Succeeded());
  EXPECT_TRUE(WaitUntil(2 * kQuiet + kSlack, [&] { return Registrations() > 1 + kFailuresToGiveUp; }))
      << "it is kept, and renewed again";
  EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(RefusingDaemon, TakesTheServiceAgainAfterItWasGivenUp) {
  RefuseAfterTheFirst(kFailuresToGiveUp);
  ASSERT_THAT(Register(), Succeeded());
  ASSERT_TRUE(WaitUntil(kSlack, [&] { return !Reports().empty(); }));
  EXPECT_THAT(Register(), Succeeded());
  const int registrations = Registrations();
  EXPECT_TRUE(WaitUntil(kSlack, [&] { return Registrations() > registrations; })) << "it is renewed";
  EXPECT_EQ(Reports().size(), 1U);
}

}  // namespace
}  // namespace kelsd::integration
