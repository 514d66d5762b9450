#include "slpd/registry/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registration_check.h"

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kUrl = "service:x://h:1";
constexpr Seconds kStart{1000};

class RegistryTest : public ::testing::Test {
 protected:
  std::string Attributes(std::string_view language = "en") {
    const std::optional<RegistrationView> found = registry.Find(kUrl, language);
    return found ? std::string(found->attributes) : "(not registered)";
  }

  RecordedEvents events;
  Registry registry{events};
  Registration registration = MakeRegistration(kUrl, "service:x", "(a=1),(b=2)");
};

TEST_F(RegistryTest, KeepsWhatWasGiven) {
  registration.language = "en-GB";
  registration.scopes = {"Default", "tamro", "DEFAULT"};
  registration.attributes = "(A=  x  Y ),(b=a\\2cb),Key";
  registration.process_id = 17;
  ASSERT_EQ(registry.Register(registration, kStart), Error::kOk);
  const std::optional<RegistrationView> found = registry.Find(kUrl, "EN-gb");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->url, kUrl);
  EXPECT_EQ(found->service_type, "service:x");
  EXPECT_EQ(found->language, "en-GB");
  EXPECT_EQ(found->scopes, "Default,tamro");
  EXPECT_EQ(found->attributes, "(A=  x  Y ),(b=a\\2cb),Key");
  EXPECT_EQ(found->lifetime, 3600);
  EXPECT_EQ(found->expiry, kStart + Seconds(3600));
  EXPECT_EQ(found->process_id, 17U);
  EXPECT_EQ(found->source, RegistrationSource::kMessage);
  EXPECT_EQ(registry.size(), 1U);
}

struct RefusedRegistration {
  const char* what;
  void (*spoil)(Registration&);
  Error error;
};

TEST_F(RegistryTest, WhatIsMalformedIsRefusedBeforeAnythingIsStored) {
  const RefusedRegistration cases[] = {
      {"lifetime 0", [](Registration& r) { r.lifetime = 0; }, Error::kInvalidRegistration},
      {"no language", [](Registration& r) { r.language = ""; }, Error::kInvalidRegistration},
      {"bad language", [](Registration& r) { r.language = "e n"; }, Error::kInvalidRegistration},
      {"no URL", [](Registration& r) { r.url = ""; }, Error::kInvalidRegistration},
      {"no address", [](Registration& r) { r.url = "service:x"; }, Error::kInvalidRegistration},
      {"blank in URL", [](Registration& r) { r.url = "service:x://a b"; }, Error::kInvalidRegistration},
      {"control in URL", [](Registration& r) { r.url = "service:x://a\x01"; }, Error::kInvalidRegistration},
      {"long URL", [](Registration& r) { r.url += '/' + std::string(0xFFFF, 'u'); },
       Error::kInvalidRegistration},
      {"no type", [](Registration& r) { r.service_type = ""; }, Error::kInvalidRegistration},
      {"long type",
       [](Registration& r) { r.service_type = "service:" + std::string(kLongestServiceType - 7, 't'); },
       Error::kInvalidRegistration},
      {"bad type", [](Registration& r) { r.service_type = "service:x y"; }, Error::kInvalidRegistration},
      {"no scope", [](Registration& r) { r.scopes = {}; }, Error::kScopeNotSupported},
      {"bad scope",
       [](Registration& r) {
         r.scopes = {"DEFAULT", "a*"};
       },
       Error::kScopeNotSupported},
      {"a=x=y", [](Registration& r) { r.attributes = "(a=x=y)"; }, Error::kInvalidRegistration},
      {"a_b", [](Registration& r) { r.attributes = "(a_b=1)"; }, Error::kInvalidRegistration},
      {"!", [](Registration& r) { r.attributes = "(a=x!y)"; }, Error::kInvalidRegistration},
      {"no comma", [](Registration& r) { r.attributes = "(a=1)(b=2)"; }, Error::kInvalidRegistration},
      {"empty value", [](Registration& r) { r.attributes = "(a=,1)"; }, Error::kInvalidRegistration},
      {"<", [](Registration& r) { r.attributes = "(a=x<y)"; }, Error::kInvalidRegistration},
      {"control", [](Registration& r) { r.attributes = "(a=x\x01y)"; }, Error::kInvalidRegistration},
      {"bad escape", [](Registration& r) { r.attributes = "(a=\\zz)"; }, Error::kInvalidRegistration},
      {"twice", [](Registration& r) { r.attributes = "(a=1),(A=2)"; }, Error::kInvalidRegistration},
      {"mixed types", [](Registration& r) { r.attributes = "(x=4,true,sue,\\ff\\00\\00)"; },
       Error::kInvalidRegistration},
      {"too long", [](Registration& r) { r.attributes = "(a=" + std::string(0xFFFF, 'v') + ")"; },
       Error::kInvalidRegistration},
  };
  ASSERT_EQ(registry.Register(registration, kStart), Error::kOk);
  events.Take();
  for (const RefusedRegistration& row : cases) {
    Registration spoilt = registration;
    row.spoil(spoilt);
    EXPECT_EQ(registry.Register(spoilt, kStart), row.error) << row.what;
    EXPECT_EQ(registry.Update(spoilt, kStart), row.error) << row.what;
  }
  EXPECT_THAT(events.Take(), IsEmpty());
  EXPECT_EQ(registry.size(), 1U);
  EXPECT_EQ(Attributes(), "(a=1),(b=2)");
}

TEST_F(RegistryTest, AScopeMayHoldEscapedCharacters) {
  registration.scopes = {"a\\2cb"};
  ASSERT_EQ(registry.Register(registration, kStart), Error::kOk);
  EXPECT_EQ(registry.Find(kUrl, "en")->scopes, "a\\2cb");
}

TEST_F(RegistryTest, AFreshRegistrationReplacesEntirely) {
  registry.Register(registration, kStart);
  Registration other = MakeRegistration(kUrl, "service:y", "(c=3)");
  other.scopes = {"TAMRO"};
  other.lifetime = 10;
  ASSERT_EQ(registry.Register(other, kStart + Seconds(5)), Error::kOk);
  EXPECT_EQ(registry.size(), 1U);
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x")), IsEmpty());
  EXPECT_THAT(FindAll(registry, MakeQuery("service:y", "(c=3)", {"TAMRO"}), kStart + Seconds(5)),
              ElementsAre(Found{kUrl, 10}));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:y", "", {"DEFAULT"})), IsEmpty());
  EXPECT_THAT(events.Take(), ElementsAre("registered service:x://h:1 en", "deregistered service:x://h:1 en",
                                         "registered service:x://h:1 en"))
      << "who serves its former scopes alone hears that it has left them";
}

TEST_F(RegistryTest, ARenewalStartsTheLifetimeAnew) {
  registration.lifetime = 10;
  registry.Register(registration, kStart);
  registry.Register(registration, kStart + Seconds(9));
  registry.Expire(kStart + Seconds(10));
  EXPECT_EQ(registry.size(), 1U);
  EXPECT_EQ(registry.NextExpiry(), kStart + Seconds(19));
  registry.Expire(kStart + Seconds(19));
  EXPECT_EQ(registry.size(), 0U);
}

TEST_F(RegistryTest, EachLanguageIsARegistrationOfItsOwn) {
  registry.Register(registration, kStart);
  Registration german = registration;
  german.language = "de";
  german.attributes = "(a=eins)";
  registry.Register(german, kStart);
  EXPECT_EQ(registry.size(), 2U);
  EXPECT_EQ(Attributes("en"), "(a=1),(b=2)");
  EXPECT_EQ(Attributes("de"), "(a=eins)");
  german.attributes = "(a=zwei)";
  registry.Register(german, kStart);
  EXPECT_EQ(Attributes("en"), "(a=1),(b=2)");
  EXPECT_EQ(Attributes("de"), "(a=zwei)");
}

TEST_F(RegistryTest, VariantsComeAndGoInAnyOrder) {
  const char* languages[] = {"en", "de", "fr"};
  for (const char* leaves_first : languages) {
    for (const char* language : languages) {
      registration.language = language;
      registration.lifetime = std::string(language) == leaves_first ? 1 : 2;
      registry.Register(registration, kStart);
    }
    registry.Expire(kStart + Seconds(1));
    EXPECT_EQ(registry.size(), 2U);
    for (const char* language : languages) {
      EXPECT_EQ(registry.Find(kUrl, language).has_value(), std::string(language) != leaves_first) << language;
    }
    registry.Expire(kStart + Seconds(2));
    EXPECT_EQ(registry.size(), 0U);
  }
}

TEST_F(RegistryTest, AnUpdateReplacesTheAttributesThatItNames) {
  registration.attributes = "(A=1),(B=2),(C=3)";
  registration.process_id = 17;
  registry.Register(registration, kStart);
  Registration update = registration;
  update.attributes = "(c=30),(D=40)";
  update.lifetime = 60;
  update.process_id = 0;
  ASSERT_EQ(registry.Update(update, kStart + Seconds(1)), Error::kOk);
  EXPECT_THAT(FindAll(registry, MakeQuery("service:x", "(&(A=1)(B=2)(C=30)(D=40))"), kStart + Seconds(1)),
              ElementsAre(Found{kUrl, 60}));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(C=3)")), IsEmpty());
  EXPECT_THAT(registry.WatchedProcesses(), ElementsAre(17U));
  EXPECT_THAT(events.Take(), ElementsAre("registered service:x://h:1 en", "updated service:x://h:1 en"));
}

TEST_F(RegistryTest, AnUpdateNeedsAnEarlierRegistrationOfTheSameTypeAndScopes) {
  EXPECT_EQ(registry.Update(registration, kStart), Error::kInvalidUpdate);
  registration.scopes = {"DEFAULT", "tamro"};
  registry.Register(registration, kStart);

  Registration update = registration;
  update.language = "de";
  EXPECT_EQ(registry.Update(update, kStart), Error::kInvalidUpdate);
  update = registration;
  update.service_type = "service:y";
  EXPECT_EQ(registry.Update(update, kStart), Error::kInvalidUpdate);
  update = registration;
  update.scopes = {"DEFAULT"};
  EXPECT_EQ(registry.Update(update, kStart), Error::kScopeNotSupported);
  update.scopes = {"DEFAULT", "TAMRO", "more"};
  EXPECT_EQ(registry.Update(update, kStart), Error::kScopeNotSupported);
  update.scopes = {"TAMRO", "default"};
  EXPECT_EQ(registry.Update(update, kStart), Error::kOk);
}

TEST_F(RegistryTest, AnUpdateThatGrowsTheListTooLongIsRefused) {
  registration.attributes = "(a=" + std::string(40'000, 'v') + ")";
  ASSERT_EQ(registry.Register(registration, kStart), Error::kOk);
  Registration update = registration;
  update.attributes = "(b=" + std::string(40'000, 'v') + ")";
  EXPECT_EQ(registry.Update(update, kStart), Error::kInvalidRegistration);
  EXPECT_EQ(Attributes(), registration.attributes);
}

struct DeregisterCase {
  std::vector<std::string> service_scopes;
  std::vector<std::string> named_scopes;
  Error error;
};

TEST_F(RegistryTest, ADeregistrationMustNameAllScopesOfTheService) {
  const DeregisterCase cases[] = {
      {{"tamro"}, {"DEFAULT", "TAMRO"}, Error::kOk},
      {{"tamro"}, {"TAMRO"}, Error::kOk},
      {{"tamro", "DEFAULT"}, {"tamro"}, Error::kScopeNotSupported},
      {{"tamro"}, {"DEFAULT"}, Error::kScopeNotSupported},
      {{"tamro"}, {}, Error::kScopeNotSupported},
  };
  for (const DeregisterCase& row : cases) {
    registration.scopes = row.service_scopes;
    ASSERT_EQ(registry.Register(registration, kStart), Error::kOk);
    EXPECT_EQ(registry.Deregister(kUrl, row.named_scopes, {}, Unlimited()), row.error);
    EXPECT_EQ(registry.size(), row.error == Error::kOk ? 0U : 1U);
  }
}

TEST_F(RegistryTest, ADeregistrationTakesAllLanguagesOrNone) {
  registry.Register(registration, kStart);
  registration.language = "de";
  registration.scopes = {"TAMRO"};
  registry.Register(registration, kStart);
  EXPECT_EQ(registry.Deregister(kUrl, {"DEFAULT"}, {}, Unlimited()), Error::kScopeNotSupported);
  EXPECT_EQ(registry.size(), 2U);
  EXPECT_EQ(registry.Deregister(kUrl, {"DEFAULT", "TAMRO"}, {}, Unlimited()), Error::kOk);
  EXPECT_EQ(registry.size(), 0U);
}

TEST_F(RegistryTest, AnUnknownUrlIsAnInvalidRegistration) {
  registry.Register(registration, kStart);
  EXPECT_EQ(registry.Deregister("service:x://H:1", {"DEFAULT"}, {}, Unlimited()),
            Error::kInvalidRegistration);
  EXPECT_EQ(registry.Deregister("", {"DEFAULT"}, {}, Unlimited()), Error::kInvalidRegistration);
  EXPECT_EQ(registry.size(), 1U);
}

TEST_F(RegistryTest, ADeregistrationWithTagsTakesTheseAttributesOnly) {
  registration.attributes = "(loc-a=1),(LOC-b=2),(c=3),d";
  registry.Register(registration, kStart);
  registration.language = "de";
  registry.Register(registration, kStart);
  events.Take();
  ASSERT_EQ(registry.Deregister(kUrl, {"DEFAULT"}, {"loc*", "D", "other"}, Unlimited()), Error::kOk);
  EXPECT_EQ(Attributes("en"), "(c=3)");
  EXPECT_EQ(Attributes("de"), "(c=3)");
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(loc-a=1)")), IsEmpty());
  EXPECT_THAT(FindAll(registry, MakeQuery("service:x", "(c=3)"), kStart), ElementsAre(Found{kUrl, 3600}));
  EXPECT_EQ(events.Take().size(), 2U);
}

TEST_F(RegistryTest, ALifetimeEndsExactlyAtItsLastSecond) {
  for (const std::uint16_t lifetime : {std::uint16_t{1}, std::uint16_t{2}, std::uint16_t{0xFFFF}}) {
    registration.lifetime = lifetime;
    registry.Register(registration, kStart);
    const Seconds end = kStart + Seconds(lifetime);
    EXPECT_EQ(registry.NextExpiry(), end);
    registry.Expire(end - Seconds(1));
    EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), end - Seconds(1)), ElementsAre(Found{kUrl, 1}));
    events.Take();
    registry.Expire(end);
    EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), end), IsEmpty());
    EXPECT_THAT(events.Take(), ElementsAre("expired service:x://h:1 en"));
    EXPECT_EQ(registry.NextExpiry(), std::nullopt);
  }
}

struct FractionCase {
  Instant start;
  Instant end;  ///< of a lifetime of one second
};

TEST_F(RegistryTest, ALifetimeNeverEndsEarlyAndAtMostOneStepLate) {
  const FractionCase cases[] = {
      {Instant(10'000), Instant(11'000)}, {Instant(10'001), Instant(11'100)},
      {Instant(10'099), Instant(11'100)}, {Instant(10'900), Instant(11'900)},
      {Instant(10'901), Instant(12'000)}, {Instant(10'999), Instant(12'000)},
  };
  registration.lifetime = 1;
  for (const FractionCase& row : cases) {
    ASSERT_EQ(registry.Register(registration, row.start), Error::kOk);
    EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), row.start), ElementsAre(Found{kUrl, 1}));
    EXPECT_EQ(registry.NextExpiry(), row.end);
    registry.Expire(row.end - Instant(1));
    EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), row.end - Instant(1)), ElementsAre(Found{kUrl, 1}));
    registry.Expire(row.end);
    EXPECT_EQ(registry.size(), 0U) << row.start.count();
  }
}

TEST_F(RegistryTest, TheLifetimeThatIsLeftIsRoundedUp) {
  registration.lifetime = 5;
  registry.Register(registration, Instant(10'950));
  const std::pair<Instant, std::uint16_t> cases[] = {
      {Instant(10'950), 5}, {Instant(11'999), 5}, {Instant(12'000), 4}, {Instant(15'999), 1}};
  for (const auto& [now, left] : cases) {
    EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), now), ElementsAre(Found{kUrl, left}))
        << now.count();
  }
}

TEST_F(RegistryTest, NextExpiryIsTheEarliest) {
  registration.lifetime = 20;
  registry.Register(registration, kStart);
  Registration sooner = MakeRegistration("service:x://h:2", "service:x");
  sooner.lifetime = 10;
  registry.Register(sooner, kStart);
  EXPECT_EQ(registry.NextExpiry(), kStart + Seconds(10));
  registry.Deregister("service:x://h:2", {"DEFAULT"}, {}, Unlimited());
  EXPECT_EQ(registry.NextExpiry(), kStart + Seconds(20));
}

TEST_F(RegistryTest, APermanentRegistrationNeverExpires) {
  registration.lifetime = kMaximumLifetime;
  registration.permanent = true;
  registry.Register(registration, kStart);
  EXPECT_EQ(registry.NextExpiry(), std::nullopt);
  registry.Expire(kStart + Seconds(10'000'000));
  EXPECT_THAT(FindAll(registry, MakeQuery("service:x"), kStart + Seconds(10'000'000)),
              ElementsAre(Found{kUrl, 0xFFFF}));
}

TEST_F(RegistryTest, AProcessTakesItsRegistrationsAlong) {
  registration.process_id = 17;
  registry.Register(registration, kStart);
  Registration second = MakeRegistration("service:x://h:2", "service:x");
  second.process_id = 17;
  registry.Register(second, kStart);
  Registration third = MakeRegistration("service:x://h:3", "service:x");
  third.process_id = 4;
  registry.Register(third, kStart);
  EXPECT_THAT(registry.WatchedProcesses(), ElementsAre(4U, 17U));
  events.Take();

  registry.DropProcess(99);
  EXPECT_THAT(events.Take(), IsEmpty());
  registry.DropProcess(17);
  EXPECT_EQ(events.Take().size(), 2U);
  EXPECT_THAT(registry.WatchedProcesses(), ElementsAre(4U));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x")), ElementsAre("service:x://h:3"));
}

TEST_F(RegistryTest, ARenewalByAnotherProcessBindsToThatOne) {
  registration.process_id = 17;
  registry.Register(registration, kStart);
  registration.process_id = 18;
  registry.Register(registration, kStart);
  EXPECT_THAT(registry.WatchedProcesses(), ElementsAre(18U));
  registration.process_id = 0;
  registry.Register(registration, kStart);
  EXPECT_THAT(registry.WatchedProcesses(), IsEmpty());
}

TEST_F(RegistryTest, FileRegistrationsGoByThemselves) {
  registry.Register(registration, kStart);
  Registration from_file = MakeRegistration("service:x://h:2", "service:x");
  from_file.source = RegistrationSource::kFile;
  registry.Register(from_file, kStart);
  registry.DropFileRegistrations();
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x")), ElementsAre(kUrl));
}

TEST_F(RegistryTest, OtherHostsRegistrationsGoByThemselves) {
  registration.source = RegistrationSource::kAgent;
  registration.host = "10.0.0.9";
  registry.Register(registration, kStart);
  Registration other = MakeRegistration("service:x://h:2", "service:x");
  other.source = RegistrationSource::kAgent;
  other.host = "10.0.0.8";
  registry.Register(other, kStart);
  registry.Register(MakeRegistration("service:x://own", "service:x"), kStart);
  registry.DropHosts();
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x")), ElementsAre("service:x://own"));
  EXPECT_EQ(registry.UseOf("10.0.0.9").registrations, 0U);
}

TEST(RegistryCapacityTest, TakesSoManyRegistrations) {
  RecordedEvents events;
  Registry registry(events, {.registrations = 2});
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://1", "service:x"), kStart), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://2", "service:x"), kStart), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://3", "service:x"), kStart), Error::kInternalError);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://2", "service:x", "(a=1)"), kStart), Error::kOk);
}

TEST(RegistryCapacityTest, OtherHostsLeaveRoomForTheOwnOne) {
  RecordedEvents events;
  Registry registry(events, {.registrations = 8});
  const auto register_of = [&registry](int number, const std::string& host) {
    Registration registration = MakeRegistration("service:x://" + std::to_string(number), "service:x");
    registration.host = host;
    return registry.Register(registration, kStart);
  };
  for (int i = 1; i <= 7; ++i) {
    ASSERT_EQ(register_of(i, "10.0.0." + std::to_string(i)), Error::kOk);
  }
  EXPECT_EQ(register_of(8, "10.0.0.8"), Error::kInternalError);
  EXPECT_EQ(register_of(7, "10.0.0.7"), Error::kOk) << "renewed";
  EXPECT_EQ(register_of(8, ""), Error::kOk);
  EXPECT_EQ(register_of(9, ""), Error::kInternalError);
}

TEST(RegistryCapacityTest, OtherHostsLeaveMemoryForTheOwnOne) {
  RecordedEvents events;
  Registry registry(events, {.bytes = 64 * 1024});
  const auto fill = [&registry](const std::string& host) {
    int taken = 0;
    for (Error error = Error::kOk; error == Error::kOk; ++taken) {
      Registration registration =
          MakeRegistration("service:x://" + host + "/" + std::to_string(taken), "service:x");
      registration.host = host;
      error = registry.Register(registration, kStart);
    }
    return taken - 1;
  };
  const int of_others = fill("10.0.0.1");
  EXPECT_GT(of_others, 7);
  EXPECT_EQ(fill("10.0.0.2"), 0);
  EXPECT_GT(fill(""), of_others / 10);
}

TEST(RegistryCapacityTest, ATypeMayBeAsLongAsTheLimit) {
  RecordedEvents events;
  Registry registry(events);
  const std::string type = "service:" + std::string(kLongestServiceType - 8, 't');
  EXPECT_EQ(registry.Register(MakeRegistration(kUrl, type), kStart), Error::kOk);
  EXPECT_THAT(FindUrls(registry, MakeQuery(type)), ElementsAre(kUrl));
}

TEST(RegistryCapacityTest, LanguagesOfOneUrlAreBounded) {
  RecordedEvents events;
  Registry registry(events, {.languages_per_url = 2});
  Registration registration = MakeRegistration(kUrl, "service:x");
  const std::pair<const char*, Error> steps[] = {
      {"en", Error::kOk}, {"de", Error::kOk}, {"fr", Error::kInternalError}, {"DE", Error::kOk}};
  for (const auto& [language, error] : steps) {
    registration.language = language;
    EXPECT_EQ(registry.Register(registration, kStart), error) << language;
  }
  registration.url = "service:x://other";
  registration.language = "fr";
  EXPECT_EQ(registry.Register(registration, kStart), Error::kOk);
}

TEST(RegistryViewTest, ForEachShowsAll) {
  RecordedEvents events;
  Registry registry(events);
  registry.Register(MakeRegistration("service:x://1", "service:x"), kStart);
  registry.Register(MakeRegistration("service:x://2", "service:x"), kStart);
  registry.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited());
  std::vector<std::string> urls;
  registry.ForEach([&urls](const RegistrationView& view) { urls.emplace_back(view.url); });
  EXPECT_THAT(urls, ElementsAre("service:x://2"));
}

}  // namespace
}  // namespace slp
