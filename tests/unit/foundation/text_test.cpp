#include "foundation/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using List = std::vector<std::string>;

// All 256 characters, in order.
std::string AllCharacters() {
  std::string text;
  for (int character = 0; character < 256; ++character) {
    text += static_cast<char>(character);
  }
  return text;
}

TEST(TrimTest, TakesWhiteSpaceOffTheEnds) {
  struct Row {
    const char* text;
    const char* both;
    const char* left;
    const char* right;
  };
  const Row rows[] = {
      {"", "", "", ""},         {" \t\n\v\f\r", "", "", ""},
      {"a", "a", "a", "a"},     {" \t\n\v\f\ra b\r\f\v\n\t ", "a b", "a b\r\f\v\n\t ", " \t\n\v\f\ra b"},
      {"  a", "a", "a", "  a"}, {"a  ", "a", "a  ", "a"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Trim(row.text), row.both);
    EXPECT_EQ(TrimLeft(row.text), row.left);
    EXPECT_EQ(TrimRight(row.text), row.right);
  }
}

TEST(TrimTest, KeepsEveryOtherCharacter) {
  for (const char character : AllCharacters()) {
    const bool space = std::string(" \t\n\v\f\r").find(character) != std::string::npos;
    EXPECT_EQ(Trim(std::string(1, character)).empty(), space) << static_cast<int>(character);
  }
}

TEST(LetterCaseTest, ChangesAsciiLettersOnly) {
  std::string lower;
  std::string upper;
  for (const char character : AllCharacters()) {
    lower += character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    upper += character >= 'a' && character <= 'z' ? static_cast<char>(character - 32) : character;
  }
  EXPECT_EQ(ToLower(AllCharacters()), lower);
  EXPECT_EQ(ToUpper(AllCharacters()), upper);
  EXPECT_EQ(ToLower(""), "");
  EXPECT_EQ(ToUpper("Grün"), "GRüN");
}

TEST(SplitTest, NeverMakesEmptyPieces) {
  EXPECT_THAT(Split(",,a,,b,", ","), ElementsAre("a", "b"));
  EXPECT_THAT(Split("", ","), IsEmpty());
  EXPECT_THAT(Split(",,,", ","), IsEmpty());
  EXPECT_THAT(Split("a", ","), ElementsAre("a"));
}

TEST(SplitTest, DoesNotTrim) {
  EXPECT_THAT(Split(" a , b ", ","), ElementsAre(" a ", " b "));
  EXPECT_THAT(Split(" , ", ","), ElementsAre(" ", " "));
}

TEST(SplitTest, TakesAnyOfSeveralDelimiters) {
  EXPECT_THAT(Split("a;b,;c", ",;"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(Split("a;b", ""), ElementsAre("a;b"));
}

TEST(SplitTest, SplitsListsAtCommas) {
  EXPECT_THAT(SplitList("10.0.0.1,, 10.0.0.2;x,"), ElementsAre("10.0.0.1", " 10.0.0.2;x"));
  EXPECT_THAT(SplitList(""), IsEmpty());
}

TEST(JoinTest, PutsCommasBetweenTrimmedElements) {
  EXPECT_EQ(Join({}), "");
  EXPECT_EQ(Join({" a "}), "a");
  EXPECT_EQ(Join({"a", "b ", " c"}), "a,b,c");
}

TEST(JoinTest, WritesASeparatorBeforeAnEmptyElement) {
  EXPECT_EQ(Join({"a", " ", "b"}), "a,,b");
  EXPECT_EQ(Join({"a", ""}), "a,");
  EXPECT_EQ(Join({"", " ", "a"}), "a");
}

TEST(NormalizeListTest, CleansAndSorts) {
  const List addresses = NormalizeList({" fe80::1 ", "10.0.0.2", "10.0.0.2", ""}, false);
  EXPECT_THAT(addresses, ElementsAre("10.0.0.2", "FE80::1"));
  EXPECT_EQ(Join(addresses), "10.0.0.2,FE80::1");
  EXPECT_THAT(NormalizeList({"b", " A", "\t"}, true), ElementsAre("a", "b"));
  EXPECT_THAT(NormalizeList({}, true), IsEmpty());
}

TEST(NormalizeListTest, SortsByBytes) {
  EXPECT_THAT(NormalizeList({"\xC3\xA9", "a", "_", "10", "9"}, false),
              ElementsAre("10", "9", "A", "_", "\xC3\xA9"));
}

TEST(NormalizeListTest, NoticesRepeatsOnlyInCleanedForm) {
  EXPECT_THAT(NormalizeList({"10.0.0.1", "10.0.0.1"}, false), ElementsAre("10.0.0.1"));
  EXPECT_THAT(NormalizeList({"abc", "abc"}, false), ElementsAre("ABC", "ABC"));
  EXPECT_THAT(NormalizeList({"abc", "ABC"}, false), ElementsAre("ABC"));
  EXPECT_THAT(NormalizeList({"ABC", "abc"}, false), ElementsAre("ABC", "ABC"));
  EXPECT_THAT(NormalizeList({"a", " a"}, true), ElementsAre("a", "a"));
}

TEST(CleanListTest, KeepsTheOrder) {
  EXPECT_THAT(CleanList({" fe80::1 ", "10.0.0.2", "10.0.0.2", ""}, false),
              ElementsAre("FE80::1", "10.0.0.2"));
  EXPECT_THAT(CleanList({"X-Version", "x-version"}, true), ElementsAre("x-version"));
  EXPECT_THAT(CleanList({"x-version", "X-Version"}, true), ElementsAre("x-version", "x-version"));
  EXPECT_THAT(CleanList({" ", ""}, true), IsEmpty());
}

TEST(EqualsNoCaseTest, IgnoresLetterCaseAndWhiteSpaceAround) {
  EXPECT_TRUE(EqualsNoCase("", " "));
  EXPECT_TRUE(EqualsNoCase(" Scope\t", "sCOPE"));
  EXPECT_FALSE(EqualsNoCase("sc ope", "scope"));
  EXPECT_FALSE(EqualsNoCase("scope", "scopes"));
  EXPECT_FALSE(EqualsNoCase("\xC3\xA9", "\xC3\x89"));
}

TEST(BoolTextTest, WritesUpperAndLowerCase) {
  EXPECT_EQ(BoolToText(true), "TRUE");
  EXPECT_EQ(BoolToText(false), "FALSE");
  EXPECT_EQ(BoolToLowerText(true), "true");
  EXPECT_EQ(BoolToLowerText(false), "false");
}

TEST(BoolTextTest, ReadsAttributeValues) {
  for (const char* text : {"TRUE", "True", "true", "tRuE"}) {
    EXPECT_TRUE(IsTrueText(text)) << text;
  }
  for (const char* text : {"", " true", "true ", "1", "yes", "t", "false", "truee"}) {
    EXPECT_FALSE(IsTrueText(text)) << text;
  }
}

TEST(BoolTextTest, ReadsPropertyValuesByTheirFirstCharacter) {
  for (const char* text : {"T", "t", "Y", "y", "1", "true", "TRUE", "yes", "Yesterday", "10"}) {
    EXPECT_TRUE(IsTrueFlag(text)) << text;
  }
  for (const char* text : {"", "0", "on", "false", " true", "n", "2"}) {
    EXPECT_FALSE(IsTrueFlag(text)) << text;
  }
  EXPECT_FALSE(IsTrueFlag(std::string(1, '\0')));
}

TEST(RemoveSuffixTest, CutsOffInPlace) {
  struct Row {
    const char* text;
    const char* suffix;
    const char* expected;
  };
  const Row rows[] = {
      {"service:a:http", ":http", "service:a"},
      {"abc", "", "abc"},
      {"", "", ""},
      {"", "a", ""},
      {"abc", "abc", ""},
      {"abc", "xabc", "abc"},
      {"abc", "b", "abc"},
      {"abcc", "c", "abc"},
  };
  for (const Row& row : rows) {
    std::string text = row.text;
    RemoveSuffix(text, row.suffix);
    EXPECT_EQ(text, row.expected) << row.text << " without " << row.suffix;
  }
}

}  // namespace
}  // namespace kelsd
