#include "text/escape.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {
namespace {

using Text = std::optional<std::string>;

TEST(Escape, WritesReservedCharactersInUpperCaseHexadecimal) {
  const struct {
    std::string text;
    std::string escaped;
  } rows[] = {
      {"", ""},
      {"plain text", "plain text"},
      {"a,b", "a\\2Cb"},
      {"(x)", "\\28x\\29"},
      {"\t", "\\09"},
      {"\x7F", "\\7F"},
      {"\xC3\xBC", "\xC3\xBC"},
      {"a*b_c", "a*b_c"},
      {"(),\\!<=>~", "\\28\\29\\2C\\5C\\21\\3C\\3D\\3E\\7E"},
      {WithNuls("\0\x1F"), "\\00\\1F"},
      {"\x80\xFF", "\x80\xFF"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Escape(row.text), row.escaped) << row.text;
  }
}

TEST(Unescape, ReadsBothCasesAndRefusesBadEscapes) {
  const struct {
    std::string text;
    Text plain;
  } rows[] = {
      {"", ""},
      {"a\\2Cb", "a,b"},
      {"a\\2cb", "a,b"},
      {"\\5C\\5c", "\\\\"},
      {"\\00", WithNuls("\0")},
      {"\\41", "A"},
      {"a\\2", std::nullopt},
      {"a\\", std::nullopt},
      {"a\\zz", std::nullopt},
      {"a\\2g", std::nullopt},
      {"\\\\2C", std::nullopt},
      {"\\FF\\00\\01", "\\FF\\00\\01"},
      {"\\ff\\00", "\\ff\\00"},
      {"\\FF\\00x", WithNuls("\xFF\0x")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(Unescape(row.text)), row.plain) << row.text;
  }
}

TEST(UnescapeReserved, TakesOnlyWhatMustBeEscaped) {
  EXPECT_EQ(ValueOf(UnescapeReserved("a\\2c\\0a\\7F")), Text("a,\n\x7F"));
  EXPECT_EQ(ValueOf(UnescapeReserved("\\41")), Text());
  EXPECT_EQ(ValueOf(UnescapeReserved("\\5f")), Text());
  EXPECT_EQ(ValueOf(UnescapeReserved("\\c3\\bc")), Text());
  EXPECT_EQ(ValueOf(UnescapeReserved("\\FF\\00")), Text());
  EXPECT_EQ(ValueOf(UnescapeReserved("\\2a")), Text());
  EXPECT_EQ(ValueOf(UnescapeReserved("\\2a", "*")), Text("*"));
}

TEST(Unescape, IsTheInverseOfEscapeForEveryByte) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text = {static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(ValueOf(Unescape(Escape(text))), Text(text)) << first << ' ' << second;
      ASSERT_EQ(ValueOf(UnescapeReserved(Escape(text))), Text(text)) << first << ' ' << second;
    }
  }
}

TEST(DecodeOpaque, TakesTheMarkFollowedByEscapedBytesOnly) {
  using Octets = std::vector<unsigned char>;
  EXPECT_EQ(DecodeOpaque("\\FF\\00"), (Octets{0}));
  EXPECT_EQ(DecodeOpaque("\\ff\\fF\\41"), (Octets{0xFF, 0x41}));
  for (const char* text : {"", "\\FF", "\\FFx", "\\FF\\00x", "\\FF\\0", "\\FE\\00", "x\\FF\\00"}) {
    EXPECT_EQ(DecodeOpaque(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace slp
