// What a directory agent is told again: before its end there, after a refusal, and from another address.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/slpd/directory/directory_client_fixture.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DirectoryClientRenewalTest : public DirectoryClientTest {
 protected:
  void RegisterLasting(bool permanent) {
    Registration registration = MakeRegistration("service:x://1", "service:x");
    registration.permanent = permanent;
    registration.lifetime = kMaximumLifetime;
    registration.source = RegistrationSource::kFile;
    ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
    client_.Tick(now_);
  }

  // As before the first service and the first agent.
  void StartOver() {
    Hear("10.0.0.5", 0);
    static_cast<void>(registry_.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited()));
    wire_.Take();
  }

  const std::string to_tell_ = "to 10.0.0.5: register service:x://1 en 10800 DEFAULT ";
};

TEST_F(DirectoryClientRenewalTest, WhatLivesLongIsToldForThreeHoursAndRenewedInTime) {
  for (const bool permanent : {true, false}) {
    ApplyPassive();
    Hear("10.0.0.5");
    wire_.Take();
    RegisterLasting(permanent);
    EXPECT_THAT(wire_.Take(), ElementsAre(to_tell_));
    Acknowledge("10.0.0.5");
    for (int rounds = 0; rounds < 3; ++rounds) {
      Advance(Seconds(5399));
      EXPECT_THAT(wire_.Take(), IsEmpty());
      Advance(Seconds(1));
      EXPECT_THAT(wire_.Take(), ElementsAre(to_tell_));
      Acknowledge("10.0.0.5");
    }
    StartOver();
  }
}

TEST_F(DirectoryClientRenewalTest, WhatEndsBeforeIsToldOnce) {
  ApplyPassive();
  Hear("10.0.0.5");
  RegisterFor(10800);
  Acknowledge("10.0.0.5");
  wire_.Take();
  Advance(Seconds(10800) - Instant(1));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientRenewalTest, EachServiceHasAMomentOfItsOwnBeforeItsEnd) {
  ApplyPassive();
  Hear("10.0.0.5");
  RegisterLasting(true);
  Acknowledge("10.0.0.5");
  wire_.Take();
  random_ = 2'700'000 - 1;
  Advance(Seconds(8100) - Instant(2));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(to_tell_));
}

TEST_F(DirectoryClientRenewalTest, TheLongestIntervalOfAnAgentEndsBeforeItsLifetimes) {
  ApplyPassive();
  HearWithInterval("65535");
  wire_.Take();
  RegisterFor(60);
  EXPECT_THAT(wire_.Take(), ElementsAre(to_tell_));
  Acknowledge("10.0.0.5");
  Advance(Seconds(10));
  RegisterFor(6000);
  Advance(Seconds(5389));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(to_tell_));
}

TEST_F(DirectoryClientRenewalTest, ARefusalIsToldOnceAndCostsTheOthersNothing) {
  ApplyPassive();
  Register("service:x://1");
  Register("service:x://2");
  Hear("10.0.0.5");
  wire_.Take();
  Acknowledge("10.0.0.5", Error::kInvalidRegistration);
  EXPECT_THAT(wire_.Take(),
              ElementsAre("problem directory agent 10.0.0.5 refuses service:x://1: error 3; trying until it "
                          "takes it, which it may not before what another address has registered ends",
                          "to 10.0.0.5: register service:x://2 en 3600 DEFAULT "));
  Acknowledge("10.0.0.5");
  Seconds left(3600);
  for (const Seconds wait : {Seconds(5), Seconds(10), Seconds(20), Seconds(40), Seconds(80), Seconds(160),
                             Seconds(300), Seconds(300)}) {
    Advance(wait - Instant(1));
    EXPECT_THAT(wire_.Take(), IsEmpty());
    Advance(Instant(1));
    left -= wait;
    EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en " +
                                          std::to_string(left.count()) + " DEFAULT "));
    Acknowledge("10.0.0.5", Error::kInvalidRegistration);
  }
  Advance(Seconds(300));
  wire_.Take();
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 takes service:x://1 now"));
  Advance(Seconds(600));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientRenewalTest, WhatIsRefusedForEverIsTriedForAsLongAsAnotherAddressMayHaveIt) {
  ApplyPassive();
  Hear("10.0.0.5");
  RegisterLasting(true);
  const Instant begin = now_;
  std::vector<Seconds> tries;
  while (now_ < begin + 4 * kLongestToldLifetime) {
    if (!wire_.Take().empty()) {
      tries.push_back(std::chrono::duration_cast<Seconds>(now_ - begin));
      Acknowledge("10.0.0.5", Error::kInvalidRegistration);
    }
    Advance(Seconds(5));
  }
  const auto later = std::find_if(tries.begin(), tries.end(), [](Seconds at) { return at > Seconds(11100); });
  EXPECT_GE(later - tries.begin(), 40);
  // From then on with the rounds.
  EXPECT_THAT(std::vector<Seconds>(later, tries.end()),
              ElementsAre(Seconds(16200), Seconds(21600), Seconds(27000), Seconds(32400), Seconds(37800)));
}

TEST_F(DirectoryClientRenewalTest, OnlyWhatMayHealIsTriedAgain) {
  for (const auto& [error, tries] :
       {std::pair(Error::kInvalidRegistration, 1U), std::pair(Error::kDaBusyNow, 1U),
        std::pair(Error::kRefreshRejected, 1U), std::pair(Error::kInternalError, 1U),
        std::pair(Error::kAuthenticationAbsent, 0U), std::pair(Error::kScopeNotSupported, 0U)}) {
    ApplyPassive();
    Hear("10.0.0.5");
    RegisterFor(3600);
    Acknowledge("10.0.0.5", error);
    wire_.Take();
    Advance(Seconds(5));
    EXPECT_EQ(wire_.Take().size(), tries) << static_cast<int>(error);
    StartOver();
  }
}

TEST_F(DirectoryClientRenewalTest, AnAgentWithoutRoomIsNotGone) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  for (Instant waited(0); waited < Instant(Seconds(600)); waited += Instant(250)) {
    if (!wire_.Take().empty()) {
      Acknowledge("10.0.0.5", Error::kDaBusyNow);
    }
    Advance(Instant(250));
  }
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientRenewalTest, WhatIsGoneIsNotTriedAgain) {
  for (const bool expires : {true, false}) {
    ApplyPassive();
    Hear("10.0.0.5");
    RegisterFor(3600);
    Acknowledge("10.0.0.5", Error::kInvalidRegistration);
    if (expires) {
      registry_.Expire(now_ + Seconds(3601));
    } else {
      ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited()), Error::kOk);
      client_.Tick(now_);
      Acknowledge("10.0.0.5", Error::kInvalidRegistration);
    }
    wire_.Take();
    EXPECT_EQ(client_.NextDue(now_), now_ + Seconds(5400)) << "nothing but the next round";
    StartOver();
  }
}

TEST_F(DirectoryClientRenewalTest, FromAnotherAddressEverythingIsToldAnew) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  Acknowledge("10.0.0.5");
  wire_.Take();
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.own_addresses = {"10.0.0.1", "10.0.0.2", "127.0.0.1"};
  client_.Apply(settings, now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), IsEmpty()) << "the agent knows it by an address that is still there";
  settings.own_addresses = {"10.0.0.2", "127.0.0.1"};
  client_.Apply(settings, now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT "));
}

}  // namespace
}  // namespace slp
