#include "text/tag.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"
#include "agent/text/unlimited.h"

namespace slp {
namespace {

TEST(ParseTag, UnescapesAndTrims) {
  const struct {
    std::string raw;
    std::optional<std::string> tag;
  } rows[] = {
      {"x-Name", "x-Name"},     {" a b ", "a b"},         {"a\\2cb", "a,b"},          {"a\\01", "a\x01"},
      {"", std::nullopt},       {"  ", std::nullopt},     {"a_b", std::nullopt},      {"a*", std::nullopt},
      {"a\\5fb", std::nullopt}, {"a\\2ab", std::nullopt}, {"a\\09b", std::nullopt},   {"a\tb", std::nullopt},
      {"a\\", std::nullopt},    {"a\\zz", std::nullopt},  {"\\FF\\00", std::nullopt}, {"a\\41", std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(ParseTag(row.raw)), row.tag) << row.raw;
  }
}

TEST(IsValidTagPattern, TakesTagsWithStars) {
  for (const char* pattern : {"a", "x-*", "*", "*bob*", "a*b*c", "some bob I know", "a\\2Cb*", " a "}) {
    EXPECT_TRUE(IsValidTagPattern(pattern)) << pattern;
  }
  for (const std::string& pattern :
       {std::string(), std::string(" "), std::string("a_b"), std::string("a=b"), std::string("(a)"),
        std::string("a,b"), std::string("a\\"), std::string("a\\zz"), std::string("a\tb"), WithNuls("a\0")}) {
    EXPECT_FALSE(IsValidTagPattern(pattern)) << pattern;
  }
}

TEST(TagPatterns, MatchTagsInAnyCase) {
  const struct {
    std::vector<std::string> patterns;
    std::string tag;
    bool matches;
  } rows[] = {
      {{}, "a", false},
      {{"A"}, " a ", true},
      {{"a"}, "ab", false},
      {{"*bob*"}, "some bob I know", true},
      {{"*bob*"}, "bigbob", true},
      {{"*bob*"}, "bobby", true},
      {{"*bob*"}, "BOB", true},
      {{"*bob*"}, "bo", false},
      {{"resolution", "loc*"}, "location-description", true},
      {{"x-*"}, "X-OK", true},
      {{"x-*"}, "ax-", false},
      {{"*"}, "anything", true},
      {{"a\\2Cb"}, "a,b", true},
      {{"a\\zz", "b"}, "a\\zz", false},
      {{"a\\zz", "b"}, "b", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TagPatterns(row.patterns).Matches(row.tag, Unlimited()), row.matches)
        << testing::PrintToString(row.patterns) << ' ' << row.tag;
  }
}

TEST(TagPatterns, KnowWhetherTheyWereAskedForAnything) {
  EXPECT_TRUE(TagPatterns({}).empty());
  EXPECT_FALSE(TagPatterns({"a\\zz"}).empty());
}

}  // namespace
}  // namespace slp
