// How many registrations a directory agent takes from one other host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

constexpr std::size_t kLimit = 3;

class RegistrationsPerHostTest : public ::testing::Test {
 protected:
  RegistrationsPerHostTest() {
    AgentSettings settings = TestSettings();
    settings.directory_agent = true;
    settings.check_source_address = false;
    settings.registrations_per_host = kLimit;
    daemon_.handler.SetSettings(settings);
    other_.address = "10.0.0.8";
  }

  Error Register(int number, const RequestOrigin& origin = kNeighbour, const std::string& language = "en",
                 std::uint16_t lifetime = 3600) {
    SrvReg request = MakeSrvReg("service:x://h/" + std::to_string(number), "service:x");
    request.url.lifetime = lifetime;
    Message message = MakeMessage(request, language);
    message.header.fresh = true;
    const std::optional<Message> reply = daemon_.Ask(message, origin);
    return reply ? std::get<SrvAck>(reply->body).error : Error::kInternalError;
  }

  void FillUp() {
    for (int i = 0; i < static_cast<int>(kLimit); ++i) {
      ASSERT_EQ(Register(i), Error::kOk);
    }
  }

  DaemonLogic daemon_;
  RequestOrigin other_ = kNeighbour;
};

TEST_F(RegistrationsPerHostTest, OneMoreThanTheLimitIsRefused) {
  FillUp();
  EXPECT_EQ(Register(3), Error::kDaBusyNow);
  EXPECT_EQ(Register(0, kNeighbour, "de"), Error::kDaBusyNow);
  EXPECT_EQ(daemon_.registry.UseOf(kNeighbour.address).registrations, kLimit);
  EXPECT_EQ(daemon_.registry.size(), kLimit);
}

TEST_F(RegistrationsPerHostTest, WhatItHasItMayRenew) {
  FillUp();
  EXPECT_EQ(Register(2), Error::kOk);
  EXPECT_EQ(daemon_.registry.UseOf(kNeighbour.address).registrations, kLimit);
}

TEST_F(RegistrationsPerHostTest, TheRefusalIsTold) {
  FillUp();
  daemon_.events.Take();
  EXPECT_EQ(Register(3), Error::kDaBusyNow);
  EXPECT_THAT(daemon_.events.Take(), testing::Contains("at limit " + kNeighbour.address));
  EXPECT_EQ(Register(3, other_), Error::kOk);
  EXPECT_THAT(daemon_.events.Take(), testing::Not(testing::Contains(testing::StartsWith("at limit"))));
}

TEST_F(RegistrationsPerHostTest, OneHostsMemoryIsLimitedToo) {
  ASSERT_EQ(Register(0), Error::kOk);
  const std::size_t one = daemon_.registry.UseOf(kNeighbour.address).bytes;
  AgentSettings settings = daemon_.handler.settings();
  settings.bytes_per_host = 2 * one;
  daemon_.handler.SetSettings(settings);
  EXPECT_EQ(Register(1), Error::kOk);
  daemon_.events.Take();
  EXPECT_EQ(Register(2), Error::kDaBusyNow);
  EXPECT_THAT(daemon_.events.Take(), testing::Contains("at limit " + kNeighbour.address));
  EXPECT_EQ(Register(2, other_), Error::kOk);
  for (int i = 20; i < 30; ++i) {
    EXPECT_EQ(Register(i, kOwnHost), Error::kOk);
  }
  EXPECT_EQ(daemon_.Ask(SrvDereg{"DEFAULT", {0, "service:x://h/0", {}}, ""}, kNeighbour), ReplyOf(SrvAck{}));
  EXPECT_EQ(Register(3), Error::kOk);
  EXPECT_EQ(daemon_.registry.UseOf(kNeighbour.address).bytes, 2 * one);
}

TEST_F(RegistrationsPerHostTest, OthersAndTheOwnHostHaveTheirOwn) {
  FillUp();
  EXPECT_EQ(Register(10, other_), Error::kOk);
  for (int i = 20; i < 30; ++i) {
    EXPECT_EQ(Register(i, kOwnHost), Error::kOk);
  }
  EXPECT_EQ(daemon_.registry.UseOf(other_.address).registrations, 1U);
  EXPECT_EQ(daemon_.registry.UseOf(kOwnHost.address).registrations, 0U);
}

TEST_F(RegistrationsPerHostTest, WhatLeavesMakesRoom) {
  FillUp();
  EXPECT_EQ(daemon_.Ask(SrvDereg{"DEFAULT", {0, "service:x://h/0", {}}, ""}, kNeighbour), ReplyOf(SrvAck{}));
  EXPECT_EQ(Register(3, kNeighbour, "en", 10), Error::kOk);
  EXPECT_EQ(Register(4), Error::kDaBusyNow);
  daemon_.now += Seconds(11);
  EXPECT_EQ(Register(4), Error::kOk);
}

TEST_F(RegistrationsPerHostTest, ARegistrationThatAnotherHostMakesAnewIsThatHosts) {
  FillUp();
  EXPECT_EQ(Register(0, other_), Error::kOk);
  EXPECT_EQ(daemon_.registry.UseOf(kNeighbour.address).registrations, kLimit - 1);
  EXPECT_EQ(daemon_.registry.UseOf(other_.address).registrations, 1U);
  EXPECT_EQ(Register(0, kOwnHost), Error::kOk);
  EXPECT_EQ(daemon_.registry.UseOf(other_.address).registrations, 0U);
}

}  // namespace
}  // namespace slp
