#include "text/attribute_value.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {
namespace {

using Content = decltype(AttributeValue::content);

TEST(ParseAttributeValue, FindsTheType) {
  const struct {
    std::string raw;
    Content content;
  } rows[] = {
      {"", Content(std::string())},
      {" ", Content(std::string(" "))},
      {"some text", Content(std::string("some text"))},
      {"a\\2Cb", Content(std::string("a,b"))},
      {"a,b", Content(std::string("a,b"))},
      {"10.0.0.1", Content(std::string("10.0.0.1"))},
      {"0", Content(0)},
      {"-0", Content(0)},
      {"8080", Content(8080)},
      {" 8080 ", Content(8080)},
      {"007", Content(7)},
      {Repeat("0", 100000) + "1", Content(1)},
      {"2147483647", Content(2147483647)},
      {"-2147483648", Content(std::int32_t{-2147483647 - 1})},
      {"2147483648", Content(std::string("2147483648"))},
      {"-2147483649", Content(std::string("-2147483649"))},
      {Repeat("9", 100000), Content(Repeat("9", 100000))},
      {"+1", Content(std::string("+1"))},
      {"-", Content(std::string("-"))},
      {"--1", Content(std::string("--1"))},
      {"1 2", Content(std::string("1 2"))},
      {"1.5", Content(std::string("1.5"))},
      {"0x1", Content(std::string("0x1"))},
      {"true", Content(true)},
      {"FALSE", Content(false)},
      {" True ", Content(true)},
      {"truer", Content(std::string("truer"))},
      {"\\FF\\00\\01", Content(Opaque{0, 1})},
      {"\\ff\\fF", Content(Opaque{0xFF})},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(ParseAttributeValue(row.raw)), (AttributeValue{row.content, row.raw}))
        << row.raw.substr(0, 40);
  }
}

TEST(ParseAttributeValue, RefusesBadEscapes) {
  for (const char* raw :
       {"\\", "a\\2", "\\zz", "\\41", "\\FF", "\\FFx", "\\FF\\00x", "x\\FF\\00", "\\c3\\bc", "\\2a"}) {
    EXPECT_EQ(ValueOf(ParseAttributeValue(raw)), std::nullopt) << raw;
  }
  EXPECT_EQ(ValueOf(ParseAttributeValue("\\2a", "*")), (AttributeValue{std::string("*"), "\\2a"}));
}

}  // namespace
}  // namespace slp
