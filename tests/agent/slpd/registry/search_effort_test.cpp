// A registry's searches end when what they may cost is used up.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

class SearchEffortTest : public ::testing::Test {
 protected:
  void Add(const std::string& url, const std::string& type, const std::string& attributes,
           const std::string& language = "en") {
    Registration registration = MakeRegistration(url, type, attributes);
    registration.language = language;
    ASSERT_EQ(registry_.Register(registration, Instant(0)), Error::kOk) << url;
  }

  Error Search(std::string_view predicate, Effort& effort) {
    return registry_.FindServices(MakeQuery("service:x", predicate), Instant(0), effort,
                                  [](std::string_view, std::uint16_t) { return true; });
  }

  std::uint64_t TouchedBy(std::string_view predicate, std::size_t units) {
    const std::uint64_t before = registry_.touched();
    Effort effort(units);
    EXPECT_EQ(Search(predicate, effort), Error::kInternalError);
    return registry_.touched() - before;
  }

  RecordedEvents events_;
  Registry registry_{events_};
};

TEST_F(SearchEffortTest, ASearchEndsAtTheServiceThatIsTooMuch) {
  for (int i = 0; i < 10; ++i) {
    Add("service:x://h/" + std::to_string(i), "service:x", "(a=" + std::string(1000, 'b') + ")");
  }
  EXPECT_EQ(TouchedBy("(!(a=*c*))", 500), 1U);
  EXPECT_EQ(TouchedBy("(!(a=*c*))", 3500), 4U);
  Effort enough(11'000);
  EXPECT_EQ(Search("(!(a=*c*))", enough), Error::kOk);
  Effort none(0);
  EXPECT_EQ(Search("", none), Error::kOk);
}

// One search plans for each concrete type of an abstract one.
TEST_F(SearchEffortTest, LookingIntoTheIndexForEachTypeIsCounted) {
  for (int i = 0; i < 100; ++i) {
    const std::string type = "service:x:t" + std::to_string(i);
    Add(type + "://h", type, "(a=0)");
  }
  std::string terms = "(&";
  for (int i = 0; i < 100; ++i) {
    terms += "(a=" + std::to_string(i + 1) + ")";
  }
  terms += ')';
  // Nothing has (a=1), so it is looked up for each type, and no other term after it.
  Effort few(16'000);
  EXPECT_EQ(Search(terms, few), Error::kOk);
  terms[1] = '|';
  Effort many(16'000);
  EXPECT_EQ(Search(terms, many), Error::kInternalError);
}

TEST_F(SearchEffortTest, AttributesOfAUrlAndOfAType) {
  const std::string tag(1000, 't');
  Add("service:x://h", "service:x", "(" + tag + "=1),other");
  const std::vector<std::string> scopes = {"DEFAULT"};
  const std::vector<std::string> tags = {"*a", "*b", "*r"};
  const ServiceType type = ParseServiceType("service:x").value();

  Effort of_url(3000);
  EXPECT_EQ(registry_.FindAttributesOfUrl("service:x://h", scopes, "en", tags, of_url).error(),
            Error::kInternalError);
  Effort of_type(3000);
  EXPECT_EQ(registry_.FindAttributesOfType(type, scopes, "en", tags, 0xFFFF, of_type).error(),
            Error::kInternalError);
  Effort enough(3200);
  EXPECT_EQ(registry_.FindAttributesOfUrl("service:x://h", scopes, "en", tags, enough)->attributes, "other");
  Effort none(0);
  EXPECT_EQ(registry_.FindAttributesOfUrl("service:x://h", scopes, "en", {"other", tag}, none)->attributes,
            "(" + tag + "=1),other");
}

TEST_F(SearchEffortTest, ADeregistrationThatIsTooMuchChangesNothing) {
  const std::string attributes = "(" + std::string(1000, 't') + "=1),other";
  Add("service:x://h", "service:x", attributes);
  Add("service:x://h", "service:x", attributes, "de");
  Effort for_one(1500);
  EXPECT_EQ(registry_.Deregister("service:x://h", {"DEFAULT"}, {"o*"}, for_one), Error::kInternalError);
  for (const char* language : {"en", "de"}) {
    EXPECT_EQ(registry_.Find("service:x://h", language)->attributes, attributes);
  }
  Effort for_both(3000);
  EXPECT_EQ(registry_.Deregister("service:x://h", {"DEFAULT"}, {"o*"}, for_both), Error::kOk);
  for (const char* language : {"en", "de"}) {
    EXPECT_EQ(registry_.Find("service:x://h", language)->attributes,
              attributes.substr(0, attributes.size() - 6));
  }
}

}  // namespace
}  // namespace slp
