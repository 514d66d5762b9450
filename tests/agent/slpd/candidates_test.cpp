#include "slpd/candidates.h"

#include <gtest/gtest.h>

#include "slpd/attribute_key.h"

namespace slp {
namespace {

constexpr std::uint32_t kType = 3;

/// The number of candidates for `predicate` among ten services with (a=1), of which three have (b=x) and one
/// has (c=true); -1 when the index cannot tell.
int CountFor(std::string_view predicate) {
  ValueIndex values;
  for (EntryId id = 0; id < 10; ++id) {
    std::string attributes = "(a=1)";
    attributes += id < 3 ? ",(b=x)" : "";
    attributes += id < 1 ? ",(c=true)" : "";
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
  const std::optional<CandidatePlan> plan = PlanCandidates(*parsed->root(), kType, values);
  return plan ? static_cast<int>(plan->count) : -1;
}

TEST(CandidatesTest, TheIndexTellsOfEqualityAlone) {
  const std::pair<const char*, int> cases[] = {
      {"(a=1)", 10},
      {"(A=1)", 10},
      {"(b=X)", 3},
      {"(c=TRUE)", 1},
      {"(c=2)", 0},
      {"(d=1)", 0},
      {"(a=*)", -1},
      {"(b=x*)", -1},
      {"(a>=1)", -1},
      {"(!(a=1))", -1},
      {"(&(a=1)(b=x))", 3},
      {"(&(b=x)(c=true)(a=1))", 1},
      {"(&(a>=1)(b=x))", 3},
      {"(&(a>=1)(b=*))", -1},
      {"(|(b=x)(c=true))", 4},
      {"(|(b=x)(c=*))", -1},
      {"(&(a=1)(|(b=x)(c=true)))", 4},
      {"(|(&(a=1)(c=true))(b=x))", 4},
      {"(&(!(a=1))(b=x))", 3},
  };
  for (const auto& [predicate, count] : cases) {
    EXPECT_EQ(CountFor(predicate), count) << predicate;
  }
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
