#include "slpd/registry/candidates.h"

#include <gtest/gtest.h>

#include "agent/text/unlimited.h"
#include "slpd/registry/attribute_key.h"

namespace slp {
namespace {

constexpr std::uint32_t kType = 3;

/// The number of candidates for `predicate` among ten services with (a=1), of which three have (b=x), two the
/// keyword k and one (c=true); -1 when the index cannot tell, or not of fewer than `limit`.
int CountFor(std::string_view predicate, std::size_t limit = 100) {
  ValueIndex values;
  for (EntryId id = 0; id < 10; ++id) {
    std::string attributes = "(a=1)";
    attributes += id < 3 ? ",(b=x)" : "";
    attributes += id < 1 ? ",(c=true)" : "";
    attributes += id < 2 ? ",k" : "";
    const Result<AttributeList> list = AttributeList::Parse(attributes);
    EXPECT_TRUE(list);
    values.Add(id, AttributeKeys(kType, *list));
    values.Add(id + 100, AttributeKeys(kType + 1, *list));
  }
  const Result<Predicate> parsed = Predicate::Parse(predicate);
  EXPECT_TRUE(parsed) << predicate;
  if (!parsed || parsed->root() == nullptr) {
    return -1;
  }
  const std::optional<CandidatePlan> plan =
      PlanCandidates(*parsed->root(), kType, values, limit, Unlimited());
  return plan ? static_cast<int>(plan->count) : -1;
}

TEST(CandidatesTest, TheIndexTellsOfAllButNegations) {
  const std::pair<const char*, int> cases[] = {
      {"(a=1)", 10},
      {"(A=1)", 10},
      {"(b=X)", 3},
      {"(c=TRUE)", 1},
      {"(c=2)", 0},
      {"(d=1)", 0},
      {"(b~=X)", 3},
      {"(a=*)", 10},
      {"(b=*)", 3},
      {"(k=*)", 2},
      {"(d=*)", 0},
      {"(b=x*)", 3},
      {"(b=*X)", 3},
      {"(b=*y)", 0},
      {"(b=w*)", 0},
      {"(a=1*)", 0},
      {"(a>=1)", 10},
      {"(a>=2)", 0},
      {"(a<=1)", 10},
      {"(a<=-1)", 0},
      {"(b>=X)", 3},
      {"(b>=y)", 0},
      {"(b<=y)", 3},
      {"(b<=w)", 0},
      {"(k>=1)", 0},
      {"(!(a=1))", -1},
      {"(&(a=1)(b=x))", 3},
      {"(&(b=x)(c=true)(a=1))", 1},
      {"(&(a>=1)(b=x))", 3},
      {"(&(a>=1)(b=*))", 3},
      {"(|(b=x)(c=true))", 4},
      {"(|(b=x)(c=*))", 4},
      {"(|(b=x)(!(c=*)))", -1},
      {"(&(b=*)(!(c=*)))", 3},
      {"(&(a=1)(|(b=x)(c=true)))", 4},
      {"(|(&(a=1)(c=true))(b=x))", 4},
      {"(&(!(a=1))(b=x))", 3},
  };
  for (const auto& [predicate, count] : cases) {
    EXPECT_EQ(CountFor(predicate), count) << predicate;
  }
}

TEST(CandidatesTest, AsManyCandidatesAsServicesAreNoPlan) {
  for (const char* predicate : {"(a=1)", "(a=*)", "(a>=1)", "(|(b=x)(c=true)(k=*)(c=*)(b=x*))"}) {
    EXPECT_EQ(CountFor(predicate, 11), 10) << predicate;
    EXPECT_EQ(CountFor(predicate, 10), -1) << predicate;
  }
  EXPECT_EQ(CountFor("(b=nothing)", 1), 0);
}

TEST(CandidatesTest, NoMoreValuesAreLookedAtThanItIsWorth) {
  std::string attributes = "(a=word0";
  for (int i = 1; i < 1000; ++i) {
    attributes += ",word" + std::to_string(i);
  }
  ValueIndex values;
  values.Add(1, AttributeKeys(kType, AttributeList::Parse(attributes + "),(b=x)").value()));
  const auto plan = [&](std::string_view predicate, std::size_t limit) {
    const Predicate parsed = Predicate::Parse(predicate).value();
    return PlanCandidates(*parsed.root(), kType, values, limit, Unlimited());
  };
  EXPECT_TRUE(plan("(a=*nothing)", 1000));
  EXPECT_FALSE(plan("(a=*nothing)", 10));
  EXPECT_TRUE(plan("(a=word99*)", 12));
  // What is looked up tells that little is to be gained; both parts of a disjunction share the work.
  EXPECT_EQ(plan("(&(a=*nothing)(b=x))", 1000)->count, 1U);
  EXPECT_TRUE(plan("(a=*nothing)", 200));
  EXPECT_FALSE(plan("(|(a=*nothing)(a=*nobody))", 200));
}

TEST(CandidatesTest, DeepConjunctionsArePlannedInOnePass) {
  std::string predicate = "(b=x)";
  for (int depth = 1; depth < Predicate::kMaximumDepth - 1; ++depth) {
    predicate.insert(0, "(&");
    predicate += "(a=1))";
  }
  EXPECT_EQ(CountFor(predicate), 3);
}

}  // namespace
}  // namespace slp
