#include "text/wildcard.h"

#include <gtest/gtest.h>

#include "agent/text/mutation.h"
#include "agent/text/outcome.h"
#include "text/fold.h"

namespace slp {
namespace {

using Pieces = std::vector<std::string>;

TEST(SplitAtWildcards, GivesPiecesInNormalForm) {
  const struct {
    std::string text;
    std::optional<Pieces> pieces;
  } rows[] = {
      {"", Pieces{""}},
      {" A  b ", Pieces{"a b"}},
      {"*", Pieces{"", ""}},
      {" * ", Pieces{"", ""}},
      {"**", Pieces{"", ""}},
      {"* *", Pieces{"", " ", ""}},
      {"Babs J*", Pieces{"babs j", ""}},
      {"univ*of*mich*", Pieces{"univ", "of", "mich", ""}},
      {" a * b ", Pieces{"a ", " b"}},
      {"*,10.0.0.2,*", Pieces{"", ",10.0.0.2,", ""}},
      {"*\\2c10.0.0.2\\2C*", Pieces{"", ",10.0.0.2,", ""}},
      {"a\\09\\0A*", Pieces{"a ", ""}},
      {"a\\2a*", std::nullopt},
      {"a\\*", std::nullopt},
      {"*\\2", std::nullopt},
      {"*\\FF\\00", std::nullopt},
      {Repeat("*", 100000), Pieces{"", ""}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(SplitAtWildcards(row.text)), row.pieces) << row.text.substr(0, 40);
  }
  EXPECT_EQ(ValueOf(SplitAtWildcards("\\2a*", "*")), (Pieces{"*", ""}));
}

TEST(MatchesPieces, FindsThemInOrderWithoutOverlap) {
  const struct {
    Pieces pieces;
    std::string text;
    bool matches;
  } rows[] = {
      {{"a"}, "a", true},
      {{"a"}, "ab", false},
      {{""}, "", true},
      {{"", ""}, "", true},
      {{"a", ""}, "abc", true},
      {{"", "c"}, "abc", true},
      {{"a", "c"}, "abc", true},
      {{"ab", "bc"}, "abc", false},
      {{"a", "a"}, "a", false},
      {{"", "bob", ""}, "some bob i know", true},
      {{"", "bob", ""}, "bob", true},
      {{"", "bob", ""}, "bo b", false},
      {{"", "ab", "ab", ""}, "abab", true},
      {{"", "ab", "ab", ""}, "aba", false},
      {{"", "aab", "b"}, "aaabb", true},
      {{"", "aab", "b"}, "aaab", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MatchesPieces(row.pieces, row.text), row.matches)
        << testing::PrintToString(row.pieces) << row.text;
  }
}

/// The definition, for texts short enough.
bool MatchesPattern(std::string_view pattern, std::string_view text) {
  if (pattern.empty()) {
    return text.empty();
  }
  if (pattern.front() == '*') {
    return MatchesPattern(pattern.substr(1), text) ||
           (!text.empty() && MatchesPattern(pattern, text.substr(1)));
  }
  return !text.empty() && pattern.front() == text.front() &&
         MatchesPattern(pattern.substr(1), text.substr(1));
}

TEST(MatchesPieces, AgreesWithTheDefinition) {
  Mutator random(2254, "aab*");
  Mutator plain(4522, "ab");
  int matched = 0;
  for (int round = 0; round < 50000; ++round) {
    const std::string pattern = random.Make(10);
    const std::string text = plain.Make(14);
    const bool matches = MatchesPieces(ValueOf(SplitAtWildcards(pattern)).value(), text);
    ASSERT_EQ(matches, MatchesPattern(pattern, text)) << pattern << ' ' << text;
    matched += matches ? 1 : 0;
  }
  EXPECT_GT(matched, 1000);
}

TEST(MatchesPieces, FindsLongPiecesLikeShortOnes) {
  Mutator random(1977, "ab");
  for (int round = 0; round < 5000; ++round) {
    std::string piece = Repeat("aab", 6) + random.Make(4);
    const std::string text = random.Make(8) + Repeat("aab", 5 + random.Below(4)) + random.Make(8);
    ASSERT_EQ(MatchesPieces({"", piece, ""}, text), text.find(piece) != std::string::npos)
        << piece << ' ' << text;
  }
}

// The plain search would take 10^11 steps here.
TEST(MatchesPieces, TakesLinearTime) {
  const std::string text = Repeat("a", 1000000);
  EXPECT_FALSE(MatchesPieces({"", Repeat("a", 200000) + "b" + Repeat("a", 200000), ""}, text));
  Pieces many(200000, "aa");
  many.front() = many.back() = "";
  EXPECT_TRUE(MatchesPieces(many, text));
  many.push_back("b");
  EXPECT_FALSE(MatchesPieces(many, text));
}

}  // namespace
}  // namespace slp
