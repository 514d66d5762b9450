// What comparing costs, and that nothing is compared any more when nothing is left.
#include "text/effort.h"

#include <gtest/gtest.h>

#include "text/predicate.h"
#include "text/tag.h"

namespace slp {
namespace {

constexpr std::size_t kPlenty = 1'000'000;

TEST(EffortTest, AllOfItCanBeSpentAndNotOneMore) {
  Effort effort(10);
  EXPECT_TRUE(effort.Spend(7));
  EXPECT_TRUE(effort.Spend(3));
  EXPECT_FALSE(effort.exhausted());
  EXPECT_TRUE(effort.Spend(0));
  EXPECT_FALSE(effort.Spend(1));
  EXPECT_TRUE(effort.exhausted());
}

TEST(EffortTest, OnceExhaustedItStaysSo) {
  Effort effort(10);
  EXPECT_FALSE(effort.Spend(11));
  EXPECT_FALSE(effort.Spend(1));
  EXPECT_FALSE(effort.Spend(0));
  EXPECT_TRUE(effort.exhausted());
}

/// Whether a comparison with `units` gets to its end.
bool Suffices(const Predicate& predicate, const AttributeList& attributes, std::size_t units) {
  Effort effort(units);
  predicate.Matches(attributes, effort);
  return !effort.exhausted();
}

/// The least effort that suffices.
std::size_t CostOf(std::string_view predicate_text, std::string_view attributes_text) {
  const auto predicate = Predicate::Parse(predicate_text);
  const auto attributes = AttributeList::Parse(attributes_text);
  EXPECT_TRUE(predicate && attributes) << predicate_text << ' ' << attributes_text;
  std::size_t least = 0;
  for (std::size_t step = kPlenty; step > 0; step /= 2) {
    while (!Suffices(*predicate, *attributes, least) &&
           !Suffices(*predicate, *attributes, least + step - 1)) {
      least += step;
    }
  }
  return least;
}

TEST(EffortTest, AComparisonCostsItselfAndWhatItLooksAt) {
  const std::string long_value(1000, 'x');
  const std::string one_lookup = "(a=" + long_value + ")";
  const std::size_t lookup = CostOf("(a=*)", one_lookup);
  EXPECT_GT(lookup, 0U);
  EXPECT_LT(lookup, Effort::kComparison);
  const std::pair<std::string, std::size_t> rows[] = {
      {"(a=*y*)", 1000},
      {"(a=y*)", 1000},
      {"(a=" + long_value + ")", 1000},
      {"(a=" + long_value + "y)", 1000},
      {"(a=xxxy)", 4},
      {"(a=y)", 1},
      {"(a<=y)", 1},
      {"(a>=xxy)", 3},
      {"(a=5)", 0},
  };
  for (const auto& [predicate, bytes] : rows) {
    EXPECT_EQ(CostOf(predicate, one_lookup), lookup + Effort::kComparison + bytes) << predicate.substr(0, 20);
  }
  EXPECT_EQ(CostOf("(b=1)", one_lookup), lookup);
  EXPECT_EQ(CostOf("(a=\\FF\\01\\02)", "(a=\\FF\\01\\03)"), lookup + Effort::kComparison + 2);
  EXPECT_EQ(CostOf("(a=\\FF\\01\\02)", "(a=\\FF\\01)"), lookup + Effort::kComparison);
  EXPECT_EQ(CostOf("(a>=\\FF\\01\\02)", "(a=\\FF\\01)"), lookup + Effort::kComparison + 1);
}

TEST(EffortTest, WhiteSpaceThatIsSkippedHasBeenLookedAt) {
  EXPECT_EQ(CostOf("(a=b c)", "(a=b" + std::string(500, ' ') + "c)"), CostOf("(a=b c)", "(a=b c)") + 499);
}

TEST(EffortTest, EachValueIsAComparison) {
  EXPECT_EQ(CostOf("(a=*4*)", "(a=b1,b2,b3)"), CostOf("(a=*4*)", "(a=b1)") + 2 * (Effort::kComparison + 2));
}

TEST(EffortTest, WhatIsDecidedAlreadyCostsNothing) {
  const std::string attributes = "(a=1)";
  EXPECT_EQ(CostOf("(|(a=1)(a=2)(a=3))", attributes), CostOf("(|(a=1))", attributes));
  EXPECT_EQ(CostOf("(&(a=2)(a=1)(a=3))", attributes), CostOf("(&(a=2))", attributes));
  EXPECT_EQ(CostOf("(!(&(a=2)(a=1)))", attributes), CostOf("(!(&(a=2)))", attributes));
  EXPECT_EQ(CostOf("(a=b1)", "(a=b1,b2,b3)"), CostOf("(a=b1)", "(a=b1)"));
  EXPECT_EQ(CostOf("", attributes), 0U);
}

TEST(EffortTest, OperatorsAreCountedToo) {
  EXPECT_EQ(CostOf("(!(!(!(a=1))))", "(a=1)"), CostOf("(a=1)", "(a=1)") + 3);
}

TEST(EffortTest, MoreAttributesAreMoreToLookThrough) {
  std::string attributes = "(a=1)";
  for (int i = 0; i < 100; ++i) {
    attributes += ",k" + std::to_string(i);
  }
  EXPECT_GT(CostOf("(a=*)", attributes), CostOf("(a=*)", "(a=1)"));
}

TEST(EffortTest, ATagIsComparedWithEachWildcardUntilOneMatches) {
  const TagPatterns patterns({"x*", "*y", "plain", "other"});
  const auto suffices = [&patterns](std::string_view tag, std::size_t units) {
    Effort effort(units);
    patterns.Matches(tag, effort);
    return !effort.exhausted();
  };
  constexpr std::size_t kOne = Effort::kComparison + 5;
  EXPECT_TRUE(suffices("plain", 0));
  EXPECT_FALSE(suffices("xabcd", kOne - 1));
  EXPECT_TRUE(suffices("xabcd", kOne));
  EXPECT_FALSE(suffices("abcde", 2 * kOne - 1));
  EXPECT_TRUE(suffices("abcde", 2 * kOne));
}

}  // namespace
}  // namespace slp
