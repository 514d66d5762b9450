// What one datagram asks for is multiplied by what is registered: a thousand terms, each compared with a long
// value of each service, kept the daemon busy for minutes. What counts is how many services are looked at
// before it ends, which does not depend on how many there are.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

constexpr int kDearServices = 100;

class DearSearchTest : public ::testing::Test {
 protected:
  // A hundredth of everything.
  DearSearchTest() {
    AgentSettings settings = TestSettings();
    settings.request_effort /= 100;
    daemon_.handler.SetSettings(settings);
  }

  void Fill(const std::string& attributes) {
    for (int i = 0; i < kDearServices; ++i) {
      ASSERT_EQ(daemon_.Register(MakeSrvReg("service:x://h/" + std::to_string(i), "service:x", attributes)),
                Error::kOk);
    }
  }

  std::uint64_t TouchedBy(const Body& request, const Body& reply) {
    const std::uint64_t before = daemon_.registry.touched();
    EXPECT_EQ(daemon_.Ask(request), ReplyOf(reply));
    return daemon_.registry.touched() - before;
  }

  DaemonLogic daemon_;
};

TEST_F(DearSearchTest, AThousandTermsThatEachLookThroughALongValue) {
  Fill("(a=" + std::string(60, 'y') + ")");
  std::string predicate = "(&";
  for (int i = 0; i < Predicate::kMaximumComparisons; ++i) {
    predicate += "(!(a=*zzzzzzzzzzzzzzzzz" + std::to_string(i) + "*))";
  }
  predicate += ')';
  EXPECT_LE(TouchedBy(MakeSrvRqst("service:x", predicate), SrvRply{Error::kInternalError, {}}), 9U);
}

TEST_F(DearSearchTest, HundredsOfTagsWithAsterisksThatEachLookThroughLongOnes) {
  std::string attributes;
  for (int i = 0; i < 3; ++i) {
    attributes += (attributes.empty() ? "" : ",") + std::string(100, 'y') + std::to_string(i);
  }
  Fill(attributes);
  std::string tags;
  for (int i = 0; i < 256; ++i) {
    tags += (tags.empty() ? "*zzzzzzzzzzzzzzzzz" : ",*zzzzzzzzzzzzzzzzz") + std::to_string(i) + "*";
  }
  EXPECT_LE(TouchedBy(MakeAttrRqst("service:x", tags), AttrRply{Error::kInternalError, {}, {}}), 8U);
}

}  // namespace
}  // namespace slp
