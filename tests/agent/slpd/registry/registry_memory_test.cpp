// The memory that a registry reckons for what it holds: the limit for all, the share of each host, and that
// what leaves gives back what it took.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

constexpr Seconds kBegin{1000};
constexpr const char* kHost = "10.0.0.7";
constexpr const char* kOtherHost = "10.0.0.8";

/// What a registry has that holds nothing else.
std::size_t BytesAlone(const Registration& registration) {
  RecordedEvents events;
  Registry registry(events);
  EXPECT_EQ(registry.Register(registration, kBegin), Error::kOk);
  return registry.bytes();
}

std::string Values(int count) {
  std::string list = "(a=0";
  for (int i = 1; i < count; ++i) {
    list += ',' + std::to_string(i);
  }
  return list + ')';
}

TEST(RegistryMemoryTest, ARegistrationMustFit) {
  const Registration registration = MakeRegistration("service:x://1", "service:x", "(a=1,2),k");
  for (const std::size_t missing : {0U, 1U}) {
    RecordedEvents events;
    Registry registry(events, {.bytes = BytesAlone(registration) - missing});
    EXPECT_EQ(registry.Register(registration, kBegin), missing == 0 ? Error::kOk : Error::kInternalError);
    EXPECT_EQ(registry.size(), 1U - missing);
  }
}

TEST(RegistryMemoryTest, UrlTypeAttributesAndIndexedValuesCount) {
  const Registration small = MakeRegistration("service:x://1", "service:x", Values(10));
  Registration larger[] = {
      MakeRegistration("service:x://" + std::string(100, 'h'), "service:x", Values(10)),
      MakeRegistration("service:x://1", "service:" + std::string(100, 't'), Values(10)),
      MakeRegistration("service:x://1", "service:x", Values(10) + ",(b=" + std::string(100, 'v') + ')'),
      MakeRegistration("service:x://1", "service:x", Values(20)),
  };
  for (const Registration& registration : larger) {
    RecordedEvents events;
    Registry registry(events, {.bytes = BytesAlone(small) + 80});
    EXPECT_EQ(registry.Register(registration, kBegin), Error::kInternalError) << registration.url;
    EXPECT_EQ(registry.Register(small, kBegin), Error::kOk);
  }
}

TEST(RegistryMemoryTest, AnIndexedValueCountsForFarMoreThanItsText) {
  const std::string tag(70, 't');
  const std::size_t few = BytesAlone(MakeRegistration("service:x://1", "service:x", '(' + tag + "=1,2,3)"));
  const std::size_t more =
      BytesAlone(MakeRegistration("service:x://1", "service:x", '(' + tag + "=1,2,3,4)"));
  EXPECT_GT(more - few, tag.size());
}

TEST(RegistryMemoryTest, AValueOfManyServicesIsThereOnce) {
  RecordedEvents events;
  Registry registry(events);
  registry.Register(MakeRegistration("service:x://1", "service:x", Values(100)), kBegin);
  const std::size_t first = registry.bytes();
  registry.Register(MakeRegistration("service:x://2", "service:x", Values(100)), kBegin);
  EXPECT_LT(registry.bytes(), first + first / 2);
}

TEST(RegistryMemoryTest, WhatIsReplacedMakesRoom) {
  const Registration registration = MakeRegistration("service:x://1", "service:x", Values(20));
  RecordedEvents events;
  Registry registry(events, {.bytes = BytesAlone(registration) + 1000});
  EXPECT_EQ(registry.Register(registration, kBegin), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://1", "service:x", "(b=x)"), kBegin), Error::kOk);
  EXPECT_EQ(registry.Register(registration, kBegin), Error::kOk);
  const Registration longer = MakeRegistration("service:x://1", "service:x", Values(60));
  EXPECT_EQ(registry.Register(longer, kBegin), Error::kInternalError);
  EXPECT_EQ(registry.Update(longer, kBegin), Error::kInternalError);
  EXPECT_EQ(registry.Find("service:x://1", "en")->attributes, Values(20));
}

class HostShareTest : public testing::Test {
 protected:
  /// Of `host`, which may have as much as four such take.
  Registration Of(const char* host, const std::string& url, int values = 10) const {
    Registration registration = MakeRegistration(url, "service:x", Values(values));
    registration.host = host;
    registration.host_share = 4 * one_;
    return registration;
  }

  void FillUp() {
    for (const char* const url : {"service:x://1", "service:x://2", "service:x://3", "service:x://4"}) {
      ASSERT_EQ(registry_.Register(Of(kHost, url), kBegin), Error::kOk);
    }
  }

  static std::size_t BytesOfOne() {
    RecordedEvents events;
    Registry registry(events);
    Registration registration = MakeRegistration("service:x://1", "service:x", Values(10));
    registration.host = kHost;
    EXPECT_EQ(registry.Register(registration, kBegin), Error::kOk);
    return registry.UseOf(kHost).bytes;
  }

  std::size_t one_ = BytesOfOne();
  RecordedEvents events_;
  Registry registry_{events_};
};

TEST_F(HostShareTest, WhatTheHostsServicesShareCountsForEach) {
  FillUp();
  EXPECT_EQ(registry_.UseOf(kHost), (HostUse{4, 4 * one_}));
  EXPECT_LT(registry_.bytes(), 4 * one_);
}

TEST_F(HostShareTest, OneAtItsShareIsRefusedAndOthersAreNot) {
  FillUp();
  EXPECT_EQ(registry_.Register(Of(kHost, "service:x://5"), kBegin), Error::kDaBusyNow);
  EXPECT_EQ(registry_.Register(Of(kOtherHost, "service:x://6"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.Register(Of("", "service:x://7", 1000), kBegin), Error::kOk);
  EXPECT_EQ(registry_.UseOf(kHost), (HostUse{4, 4 * one_}));
  EXPECT_EQ(registry_.UseOf(kOtherHost), (HostUse{1, one_}));
  EXPECT_EQ(registry_.UseOf(""), HostUse());
}

TEST_F(HostShareTest, WhatItHasItMayRenewAndMakeSmaller) {
  FillUp();
  EXPECT_EQ(registry_.Register(Of(kHost, "service:x://1"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.Update(Of(kHost, "service:x://1"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.Register(Of(kHost, "service:x://1", 20), kBegin), Error::kDaBusyNow);
  EXPECT_EQ(registry_.Update(Of(kHost, "service:x://1", 20), kBegin), Error::kDaBusyNow);
  EXPECT_EQ(registry_.Find("service:x://1", "en")->attributes, Values(10));
  Registration smaller = Of(kHost, "service:x://1", 9);
  smaller.host_share = 1;
  EXPECT_EQ(registry_.Register(smaller, kBegin), Error::kOk);
}

TEST_F(HostShareTest, AnothersServiceCountsForWhoRegistersItAnew) {
  FillUp();
  EXPECT_EQ(registry_.Register(Of(kOtherHost, "service:x://6"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.Register(Of(kHost, "service:x://6"), kBegin), Error::kDaBusyNow);
  EXPECT_EQ(registry_.Register(Of(kOtherHost, "service:x://1"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.UseOf(kHost), (HostUse{3, 3 * one_}));
  EXPECT_EQ(registry_.UseOf(kOtherHost), (HostUse{2, 2 * one_}));
  EXPECT_EQ(registry_.Register(Of(kHost, "service:x://6"), kBegin), Error::kOk);
  EXPECT_EQ(registry_.UseOf(kOtherHost), (HostUse{1, one_}));
}

/// Registers, updates, takes back, lets expire and drops at random.
class RandomRegistrations {
 public:
  void Step() {
    now_ += Instant(random_() % 700);
    switch (random_() % 10) {
      case 0:
        static_cast<void>(registry_.Deregister(Url(), {"DEFAULT", "TAMRO"}, {}, Unlimited()));
        break;
      case 1:
        static_cast<void>(registry_.Deregister(Url(), {"DEFAULT", "TAMRO"}, {random_() % 2 == 0 ? "a" : "k*"},
                                               Unlimited()));
        break;
      case 2:
      case 3:
        static_cast<void>(registry_.Update(Any(), now_));
        break;
      case 4:
        registry_.Expire(now_);
        break;
      case 5:
        registry_.DropProcess(1 + random_() % 3);
        break;
      default:
        static_cast<void>(registry_.Register(Any(), now_));
    }
  }

  void DropEverything() {
    registry_.DropFileRegistrations();
    registry_.Expire(now_ + Seconds(kMaximumLifetime) + Seconds(1));
  }

  /// The same registrations in a registry that never had others.
  void FillAnew(Registry& other) const {
    registry_.ForEach([&](const RegistrationView& view) {
      const Registration registration{.url = std::string(view.url),
                                      .service_type = std::string(view.service_type),
                                      .language = std::string(view.language),
                                      .scopes = {std::string(view.scopes)},
                                      .attributes = std::string(view.attributes),
                                      .lifetime = view.lifetime,
                                      .permanent = !view.expiry,
                                      .process_id = view.process_id,
                                      .source = view.source,
                                      .host = std::string(view.host)};
      ASSERT_EQ(other.Register(registration, view.expiry.value_or(kBegin) - Seconds(view.lifetime)),
                Error::kOk);
    });
  }

  const Registry& registry() const { return registry_; }

 private:
  std::string Url() { return "service:x://" + std::to_string(random_() % 40); }

  Registration Any() {
    static constexpr const char* kLists[] = {"", "k1,k2", "(a=1)", "(a=2,3),(b=x,y),k1",
                                             "(a=\\FF\\00\\01),(c=true)"};
    static constexpr const char* kHosts[] = {"", kHost, kOtherHost};
    Registration registration = MakeRegistration(Url(), random_() % 2 == 0 ? "service:x" : "service:y:z");
    registration.attributes = random_() % 6 == 0 ? Values(100) : kLists[random_() % std::size(kLists)];
    registration.language = random_() % 4 == 0 ? "de" : "en";
    registration.scopes = {random_() % 4 == 0 ? "TAMRO" : "DEFAULT"};
    registration.lifetime = static_cast<std::uint16_t>(1 + random_() % 60);
    registration.host = kHosts[random_() % std::size(kHosts)];
    if (registration.host.empty()) {
      registration.process_id = random_() % 4;
      registration.source = random_() % 3 == 0 ? RegistrationSource::kFile : RegistrationSource::kMessage;
    } else {
      registration.host_share = 20'000;
    }
    return registration;
  }

  std::mt19937 random_{1};
  Instant now_ = kBegin;
  RecordedEvents events_;
  Registry registry_{events_};
};

TEST(RegistryMemoryTest, WhatLeavesGivesBackWhatItTook) {
  RandomRegistrations registrations;
  const Registry& registry = registrations.registry();
  for (int step = 0; step < 5'000; ++step) {
    registrations.Step();
    if (step % 100 != 0) {
      continue;
    }
    RecordedEvents events;
    Registry same(events);
    registrations.FillAnew(same);
    ASSERT_EQ(registry.size(), same.size());
    ASSERT_EQ(registry.bytes(), same.bytes()) << step;
    for (const char* const host : {kHost, kOtherHost}) {
      ASSERT_EQ(registry.UseOf(host), same.UseOf(host)) << step;
      ASSERT_LE(registry.UseOf(host).bytes, 20'000U);
    }
  }
  EXPECT_GT(registry.size(), 10U);
  registrations.DropEverything();
  EXPECT_EQ(registry.size(), 0U);
  EXPECT_EQ(registry.bytes(), 0U);
  EXPECT_EQ(registry.UseOf(kHost), HostUse());
  EXPECT_EQ(registry.UseOf(kOtherHost), HostUse());
}

}  // namespace
}  // namespace slp
