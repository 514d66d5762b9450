// Registrations of the file behind those of messages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kUrl = "service:x://h:1";
constexpr Seconds kStart{1000};
constexpr Seconds kLater{1100};

class RegistryCoveredTest : public ::testing::Test {
 protected:
  RegistryCoveredTest() {
    from_file.source = RegistrationSource::kFile;
    from_file.lifetime = kMaximumLifetime;
    from_file.permanent = true;
    from_message.lifetime = 60;
    from_message.process_id = 17;
  }

  /// "file (a=1)": where the registration of the URL comes from, and its attributes.
  std::string Kept() const {
    const std::optional<RegistrationView> found = registry.Find(kUrl, "en");
    if (!found) {
      return "nothing";
    }
    return (found->source == RegistrationSource::kFile ? "file " : "message ") +
           std::string(found->attributes);
  }

  RecordedEvents events;
  Registry registry{events};
  Registration from_file = MakeRegistration(kUrl, "service:x", "(a=file)");
  Registration from_message = MakeRegistration(kUrl, "service:x", "(a=message)");
};

struct EndCase {
  const char* what;
  void (*end)(Registry&);
  const char* event;
};

TEST_F(RegistryCoveredTest, TheFilesOneIsThereAgainWhenTheMessagesHasLeft) {
  const EndCase ends[] = {
      {"expiry", [](Registry& all) { all.Expire(kLater + Seconds(60)); }, "expired"},
      {"deregistration", [](Registry& all) { (void)all.Deregister(kUrl, {"DEFAULT"}, {}, Unlimited()); },
       "deregistered"},
      {"process", [](Registry& all) { all.DropProcess(17); }, "process ended"},
  };
  for (const char* attributes : {"(a=message)", "(a=file)"}) {
    for (const bool file_first : {true, false}) {
      for (const EndCase& row : ends) {
        SCOPED_TRACE(std::string(row.what) + ' ' + attributes + (file_first ? " file first" : ""));
        registry.DropFileRegistrations();
        from_message.attributes = attributes;
        if (file_first) {
          ASSERT_EQ(registry.Register(from_file, kStart), Error::kOk);
          EXPECT_EQ(Kept(), "file (a=file)");
          ASSERT_EQ(registry.Register(from_message, kLater), Error::kOk);
        } else {
          ASSERT_EQ(registry.Register(from_message, kLater), Error::kOk);
          ASSERT_EQ(registry.Register(from_file, kLater), Error::kOk);
        }
        EXPECT_EQ(Kept(), std::string("message ") + attributes);
        EXPECT_EQ(registry.size(), 1U);
        events.Take();

        row.end(registry);
        EXPECT_EQ(Kept(), "file (a=file)");
        EXPECT_EQ(registry.size(), 1U);
        EXPECT_EQ(registry.NextExpiry(), std::nullopt);
        EXPECT_THAT(registry.WatchedProcesses(), IsEmpty());
        EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(a=file)"), kLater), ElementsAre(kUrl));
        EXPECT_THAT(events.Take(), ElementsAre(std::string(row.event) + ' ' + kUrl + " en",
                                               std::string("registered ") + kUrl + " en"));
      }
    }
  }
}

TEST_F(RegistryCoveredTest, AnUpdateCoversTheFilesOneToo) {
  registry.Register(from_file, kStart);
  from_message.attributes = "(b=2)";
  ASSERT_EQ(registry.Update(from_message, kLater), Error::kOk);
  EXPECT_EQ(Kept(), "message (a=file),(b=2)");
  ASSERT_EQ(registry.Update(from_message, kLater), Error::kOk);
  registry.Expire(kLater + Seconds(60));
  EXPECT_EQ(Kept(), "file (a=file)");
}

TEST_F(RegistryCoveredTest, ARenewalKeepsWhatIsCovered) {
  registry.Register(from_file, kStart);
  registry.Register(from_message, kLater);
  from_message.service_type = "service:y";
  registry.Register(from_message, kLater);
  registry.Expire(kLater + Seconds(60));
  EXPECT_EQ(Kept(), "file (a=file)");
  EXPECT_EQ(registry.Find(kUrl, "en")->service_type, "service:x");
}

TEST_F(RegistryCoveredTest, ItComesBackForTheRestOfItsLifetime) {
  from_file.permanent = false;
  from_file.lifetime = 500;
  registry.Register(from_file, kStart);
  registry.Register(from_message, kLater);
  registry.Expire(kLater + Seconds(60));
  EXPECT_EQ(registry.Find(kUrl, "en")->expiry, kStart + Seconds(500));
  registry.Expire(kStart + Seconds(500));
  EXPECT_EQ(Kept(), "nothing");
}

TEST_F(RegistryCoveredTest, WhatHasExpiredMeanwhileStaysAway) {
  from_file.permanent = false;
  from_file.lifetime = 120;
  registry.Register(from_file, kStart);
  registry.Register(from_message, kLater);
  registry.Expire(kLater + Seconds(60));
  EXPECT_EQ(Kept(), "nothing");
}

TEST_F(RegistryCoveredTest, AnotherFileEndsWhatIsCovered) {
  registry.Register(from_file, kStart);
  registry.Register(from_message, kLater);
  registry.DropFileRegistrations();
  EXPECT_EQ(Kept(), "message (a=message)");
  registry.Expire(kLater + Seconds(60));
  EXPECT_EQ(Kept(), "nothing");
}

TEST_F(RegistryCoveredTest, ADeregistrationOfTheFilesOneItselfLasts) {
  registry.Register(from_file, kStart);
  EXPECT_EQ(registry.Deregister(kUrl, {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  EXPECT_EQ(Kept(), "nothing");
}

}  // namespace
}  // namespace slp
