#include "slpd/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registration_check.h"

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
  EXPECT_THAT(events.Take(), ElementsAre("registered service:x://h:1 en", "renewed service:x://h:1 en"));
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
    EXPECT_EQ(registry.Deregister(kUrl, row.named_scopes, {}), row.error);
    EXPECT_EQ(registry.size(), row.error == Error::kOk ? 0U : 1U);
  }
}

TEST_F(RegistryTest, ADeregistrationTakesAllLanguagesOrNone) {
  registry.Register(registration, kStart);
  registration.language = "de";
  registration.scopes = {"TAMRO"};
  registry.Register(registration, kStart);
  EXPECT_EQ(registry.Deregister(kUrl, {"DEFAULT"}, {}), Error::kScopeNotSupported);
  EXPECT_EQ(registry.size(), 2U);
  EXPECT_EQ(registry.Deregister(kUrl, {"DEFAULT", "TAMRO"}, {}), Error::kOk);
  EXPECT_EQ(registry.size(), 0U);
}

TEST_F(RegistryTest, AnUnknownUrlIsAnInvalidRegistration) {
  registry.Register(registration, kStart);
  EXPECT_EQ(registry.Deregister("service:x://H:1", {"DEFAULT"}, {}), Error::kInvalidRegistration);
  EXPECT_EQ(registry.Deregister("", {"DEFAULT"}, {}), Error::kInvalidRegistration);
  EXPECT_EQ(registry.size(), 1U);
}

TEST_F(RegistryTest, ADeregistrationWithTagsTakesTheseAttributesOnly) {
  registration.attributes = "(loc-a=1),(LOC-b=2),(c=3),d";
  registry.Register(registration, kStart);
  registration.language = "de";
  registry.Register(registration, kStart);
  events.Take();
  ASSERT_EQ(registry.Deregister(kUrl, {"DEFAULT"}, {"loc*", "D", "other"}), Error::kOk);
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
  registry.Deregister("service:x://h:2", {"DEFAULT"}, {});
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

TEST(RegistryCapacityTest, RefusesWhatItHasNoRoomFor) {
  RecordedEvents events;
  Registry registry(events, {.registrations = 2, .text_bytes = 60});
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://1", "service:x"), kStart), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://2", "service:x"), kStart), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://3", "service:x"), kStart), Error::kInternalError);
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://2", "service:x", "(a=1)"), kStart), Error::kOk);
  const std::string long_value = "(a=" + std::string(40, 'v') + ')';
  EXPECT_EQ(registry.Register(MakeRegistration("service:x://2", "service:x", long_value), kStart),
            Error::kInternalError);
  EXPECT_EQ(registry.Update(MakeRegistration("service:x://2", "service:x", long_value), kStart),
            Error::kInternalError);
  EXPECT_EQ(registry.Find("service:x://2", "en")->attributes, "(a=1)");
}

TEST(RegistryCapacityTest, ATypeMayBeAsLongAsTheLimit) {
  RecordedEvents events;
  Registry registry(events);
  const std::string type = "service:" + std::string(kLongestServiceType - 8, 't');
  EXPECT_EQ(registry.Register(MakeRegistration(kUrl, type), kStart), Error::kOk);
  EXPECT_THAT(FindUrls(registry, MakeQuery(type)), ElementsAre(kUrl));
}

TEST(RegistryCapacityTest, TypesCountAsText) {
  RecordedEvents events;
  Registry registry(events, {.text_bytes = 60});
  EXPECT_EQ(registry.Register(MakeRegistration("http://a", "service:" + std::string(45, 't')), kStart),
            Error::kInternalError);
  EXPECT_EQ(registry.Register(MakeRegistration("http://a", "service:" + std::string(44, 't')), kStart),
            Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("http://a", "service:" + std::string(45, 't')), kStart),
            Error::kInternalError);
  ASSERT_EQ(registry.Deregister("http://a", {"DEFAULT"}, {}), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("http://b", "service:" + std::string(44, 'u')), kStart),
            Error::kOk);
}

TEST(RegistryCapacityTest, ValuesCount) {
  RecordedEvents events;
  Registry registry(events, {.values = 5});
  EXPECT_EQ(registry.Register(MakeRegistration("http://a", "http", "(a=1,2),(b=3)"), kStart), Error::kOk);
  EXPECT_EQ(registry.Register(MakeRegistration("http://b", "http", "(a=1,2),k"), kStart),
            Error::kInternalError);
  EXPECT_EQ(registry.Register(MakeRegistration("http://b", "http", "(a=1),k"), kStart), Error::kOk);
  EXPECT_EQ(registry.Update(MakeRegistration("http://b", "http", "(c=1)"), kStart), Error::kInternalError);
  EXPECT_EQ(registry.Register(MakeRegistration("http://a", "http", "(a=7,8,9)"), kStart), Error::kOk);
  ASSERT_EQ(registry.Deregister("http://a", {"DEFAULT"}, {"*"}), Error::kOk);
  EXPECT_EQ(registry.Update(MakeRegistration("http://b", "http", "(c=1,2,3)"), kStart), Error::kOk);
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
  registry.Deregister("service:x://1", {"DEFAULT"}, {});
  std::vector<std::string> urls;
  registry.ForEach([&urls](const RegistrationView& view) { urls.emplace_back(view.url); });
  EXPECT_THAT(urls, ElementsAre("service:x://2"));
}

}  // namespace
}  // namespace slp
