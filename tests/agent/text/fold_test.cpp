#include "text/fold.h"

#include <gtest/gtest.h>

#include <random>

#include "agent/text/outcome.h"

namespace slp {
namespace {

TEST(Fold, LowersAsciiAndFoldsWhiteSpace) {
  const struct {
    std::string text;
    std::string folded;
  } rows[] = {
      {"", ""},
      {" \t\r\n", ""},
      {"  Some String  ", "some string"},
      {"SOME    STRING", "some string"},
      {"a\r\n\tb", "a b"},
      {"\xC3\x9C", "\xC3\x9C"},
      {"[@`{", "[@`{"},
      {"a\vb", "a\vb"},
      {WithNuls("A\0 "), WithNuls("a\0")},
      {Repeat(" ", 100000) + "X" + Repeat("\t", 100000), "x"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Fold(row.text), row.folded);
    EXPECT_TRUE(EqualFolded(row.text, row.folded));
  }
}

TEST(FoldInside, KeepsOneBlankAtTheEnds) {
  EXPECT_EQ(FoldInside("  A  b\t"), " a b ");
  EXPECT_EQ(FoldInside(" \n "), " ");
  EXPECT_EQ(FoldInside(""), "");
}

TEST(CompareFolded, OrdersNormalFormsByUnsignedBytes) {
  EXPECT_TRUE(CompareFolded("abc", "ABD") < 0);
  EXPECT_TRUE(CompareFolded("B", "a") > 0);
  EXPECT_TRUE(CompareFolded("a", "a b") < 0);
  EXPECT_TRUE(CompareFolded("a\x80", "az") > 0);
  EXPECT_TRUE(CompareFolded(" A  B ", "a b") == 0);
  EXPECT_TRUE(CompareFolded("", "  ") == 0);
  EXPECT_FALSE(EqualFolded("ab", "a b"));
  EXPECT_FALSE(EqualFolded("a", "ab"));
}

TEST(CompareFolded, AgreesWithTheFoldedTextsWhateverTheyAre) {
  std::mt19937 random(20081);
  const std::string alphabet = WithNuls("aAbB \t\r\n\0\x80\xFF");
  const auto make = [&] {
    std::string text;
    for (auto length = random() % 8; length > 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::string a = make();
    const std::string b = make();
    ASSERT_EQ(CompareFolded(a, b) < 0, Fold(a) < Fold(b));
    ASSERT_EQ(EqualFolded(a, b), Fold(a) == Fold(b));
    ASSERT_EQ(Fold(Fold(a)), Fold(a));
    ASSERT_EQ(Trim(FoldInside(a)), Fold(a));
  }
}

TEST(Trim, TakesWhiteSpaceFromBothEndsOnly) {
  EXPECT_EQ(Trim(" \ta b\r\n"), "a b");
  EXPECT_EQ(Trim(" \t\r\n"), "");
  EXPECT_EQ(Trim(""), "");
}

}  // namespace
}  // namespace slp
