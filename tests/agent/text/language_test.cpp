#include "text/language.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {
namespace {

TEST(IsValidLanguageTag, TakesSubtagsOfOneToEightCharacters) {
  for (const char* tag : {"en", "EN-gb", "i-klingon", "de-1996", "x-abcdefgh", "a"}) {
    EXPECT_TRUE(IsValidLanguageTag(tag)) << tag;
  }
  for (const std::string& tag : {std::string(), std::string("-"), std::string("en-"), std::string("-en"),
                                 std::string("en--gb"), std::string("abcdefghi"), std::string("en_GB"),
                                 std::string("en GB"), WithNuls("en\0"), std::string("d\xC3\xA9")}) {
    EXPECT_FALSE(IsValidLanguageTag(tag)) << tag;
  }
}

TEST(IsValidLanguageTag, RefusesWhatIsTooLong) {
  std::string tag = "x";
  while (tag.size() + 9 <= kLongestLanguageTag) {
    tag += "-abcdefgh";
  }
  ASSERT_EQ(tag.size(), kLongestLanguageTag);
  EXPECT_TRUE(IsValidLanguageTag(tag));
  tag.back() = '-';
  EXPECT_FALSE(IsValidLanguageTag(tag + "ab"));
}

TEST(LanguageServes, ComparesWithoutDialectAndCase) {
  const struct {
    const char* registered;
    const char* requested;
    bool serves;
  } rows[] = {
      {"en", "en", true},  {"en", "EN-gb", true}, {"en-US", "en", true}, {"en-US", "en-GB", true},
      {"de", "en", false}, {"en", "eng", false},  {"", "en", false},     {"e", "en", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LanguageServes(row.registered, row.requested), row.serves)
        << row.registered << " for " << row.requested;
  }
}

}  // namespace
}  // namespace slp
