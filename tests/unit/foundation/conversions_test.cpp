#include "foundation/conversions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/grouping_locale.h"

namespace kelsd {
namespace {

// The message of the conversion failure that `body` ends in; "no failure" when it doesn't.
std::string FailureOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const BadConversionException& failure) {
    return failure.what();
  }
  return "no failure";
}

struct PortRow {
  const char* text;
  bool reject_trailing;
  int port;
};

TEST(StringConvertTest, ReadsPorts) {
  const PortRow rows[] = {
      {"0", true, 0},       {"80", true, 80},      {"65535", true, 65535}, {"  80", true, 80},
      {"\t\n80", true, 80}, {"00080", true, 80},   {"+80", true, 80},      {"80 ", false, 80},
      {"80a", false, 80},   {"80,443", false, 80}, {"-0", true, 0},        {"65535x", false, 65535},
  };
  for (const PortRow& row : rows) {
    unsigned short port = 1;
    StringConvert<unsigned short>(row.text, port, row.reject_trailing);
    EXPECT_EQ(port, row.port) << '"' << row.text << '"';
  }
}

TEST(StringConvertTest, RefusesWhatIsNoPort) {
  for (const std::string text : {"", " ", "65536", "99999999999999999999", "-1", " -1", "-65535", "-65536",
                                 "abc", "x80", "0x", "80a", "80 ", "80\n", "80.5", "8 0", "+", "-"}) {
    unsigned short port = 1;
    EXPECT_EQ(FailureOf([&] { StringConvert<unsigned short>(text, port, true); }),
              "StringConvert(" + text + ",unsigned short,1).");
  }
}

TEST(StringConvertTest, RefusesNumbersOutOfRangeWhateverFollows) {
  for (const std::string text : {"", "65536", "-1", "-1x", "abc"}) {
    unsigned short port = 1;
    EXPECT_EQ(FailureOf([&] { StringConvert<unsigned short>(text, port, false); }),
              "StringConvert(" + text + ",unsigned short,0).");
  }
}

TEST(StringConvertTest, ReadsIntegers) {
  int value = 0;
  StringConvert<int>("2147483647", value, true);
  EXPECT_EQ(value, std::numeric_limits<int>::max());
  StringConvert<int>("-2147483648", value, true);
  EXPECT_EQ(value, std::numeric_limits<int>::min());
  StringConvert<int>(" -1", value, true);
  EXPECT_EQ(value, -1);
  for (const std::string text : {"2147483648", "-2147483649", "", "1.5", "1 "}) {
    EXPECT_EQ(FailureOf([&] { StringConvert<int>(text, value, true); }),
              "StringConvert(" + text + ",int,1).");
  }
}

TEST(StringConvertTest, ReadsFloatingNumbers) {
  long double value = 0;
  StringConvert<long double>("1.5", value, true);
  EXPECT_EQ(value, 1.5L);
  StringConvert<long double>(" -2e3", value, true);
  EXPECT_EQ(value, -2000.0L);
  StringConvert<long double>("4294967296", value, true);
  EXPECT_EQ(value, 4294967296.0L);
  StringConvert<long double>("7 apples", value, false);
  EXPECT_EQ(value, 7.0L);
  for (const std::string text : {"", "x", "1,5", "1.5 "}) {
    EXPECT_EQ(FailureOf([&] { StringConvert<long double>(text, value, true); }),
              "StringConvert(" + text + ",long double,1).");
  }
}

TEST(StringConvertTest, TakesTheSameTextsForFloatingNumbersAsAStreamDoes) {
  for (const std::string text : {"+5",
                                 "-5",
                                 "+-5",
                                 "-+5",
                                 "--5",
                                 "+ 5",
                                 "-",
                                 "+",
                                 ".",
                                 ".5",
                                 "5.",
                                 "-.5",
                                 "1E2",
                                 "1e+2",
                                 "1e-2",
                                 "1e",
                                 "1e+",
                                 "e5",
                                 "1e99999",
                                 "-1e99999",
                                 "inf",
                                 "-infinity",
                                 "nan",
                                 "0x10",
                                 "1_000",
                                 "007",
                                 "\t\n\v\f\r 7",
                                 "2147483648.5",
                                 "0.1",
                                 "123456789012345678901234567890",
                                 "1.2.3"}) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    long double expected = 0;
    stream >> expected;
    const bool is_number = !stream.fail() && stream.get() == std::istringstream::traits_type::eof();
    long double value = 0;
    const std::string failure = FailureOf([&] { StringConvert<long double>(text, value, true); });
    EXPECT_EQ(failure, is_number ? "no failure" : "StringConvert(" + text + ",long double,1).") << text;
    if (is_number) {
      EXPECT_DOUBLE_EQ(static_cast<double>(value), static_cast<double>(expected)) << text;
    }
  }
}

TEST(StringConvertTest, CountsANullCharacterAsTrailingText) {
  unsigned short port = 0;
  EXPECT_THROW(StringConvert<unsigned short>(std::string("80\0", 3), port, true), BadConversionException);
}

TEST(StringifyTest, WritesTheTypesThatTheLibraryUses) {
  EXPECT_EQ(Stringify<unsigned short>(0), "0");
  EXPECT_EQ(Stringify<unsigned short>(8080), "8080");
  EXPECT_EQ(Stringify<unsigned short>(65535), "65535");
  EXPECT_EQ(Stringify<bool>(true), "1");
  EXPECT_EQ(Stringify<bool>(false), "0");
  EXPECT_EQ(Stringify<int>(-2147483647 - 1), "-2147483648");
  EXPECT_EQ(Stringify<std::uint64_t>(18446744073709551615U), "18446744073709551615");
}

TEST(StringifyTest, KeepsAllDigitsOfFloatingNumbers) {
  EXPECT_EQ(Stringify<double>(0.1), "0.10000000000000001");
}

struct Unprintable {};

std::ostream& operator<<(std::ostream& stream, const Unprintable&) {
  stream.setstate(std::ios_base::failbit);
  return stream;
}

TEST(StringifyTest, ReportsAFailedStreamWithTheTypeName) {
  const std::string failure = FailureOf([] { Stringify(Unprintable()); });
  EXPECT_EQ(failure, "Stringify(" + ReadableTypeName(typeid(Unprintable)) + ")");
  EXPECT_NE(failure.find("Unprintable)"), std::string::npos) << failure;
}

TEST(ConversionsTest, IgnoreTheLocaleOfTheApplication) {
  const test::GroupingLocale locale;
  EXPECT_EQ(Stringify<unsigned short>(8080), "8080");
  EXPECT_EQ(Stringify<double>(0.5), "0.5");
  long double value = 0;
  StringConvert<long double>("1.5", value, true);
  EXPECT_EQ(value, 1.5L);
  unsigned short port = 0;
  EXPECT_EQ(FailureOf([&] { StringConvert<unsigned short>("8.080", port, true); }),
            "StringConvert(8.080,unsigned short,1).");
}

TEST(BadConversionExceptionTest, IsARuntimeErrorWithItsMessage) {
  EXPECT_TRUE((std::is_base_of_v<std::runtime_error, BadConversionException>));
  EXPECT_EQ(sizeof(BadConversionException), sizeof(std::runtime_error));
  EXPECT_FALSE((std::is_default_constructible_v<BadConversionException>));
  const BadConversionException failure(std::string("message"));
  const BadConversionException copy(failure);
  EXPECT_STREQ(copy.what(), "message");
}

}  // namespace
}  // namespace kelsd
