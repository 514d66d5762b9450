#include "config/integer_conversion.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "foundation/conversions.h"

namespace kelsd {
namespace {

TEST(IntegerConversion, ReadsDecimalNumbersOfTheWholeRange) {
  const struct {
    std::string text;
    int value;
  } rows[] = {
      {"0", 0},
      {"42", 42},
      {"-1", -1},
      {"+7", 7},
      {" 42", 42},
      {"\t5", 5},
      {"0010", 10},
      {"2147483647", std::numeric_limits<int>::max()},
      {"-0", 0},
      {"427", 427},
      {"-2147483648", std::numeric_limits<int>::min()},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ParseInteger(row.text), row.value) << row.text;
  }
}

TEST(IntegerConversion, RefusesEverythingElseWithASentence) {
  const struct {
    std::string text;
    std::string message;
  } rows[] = {
      {"2147483648", "Numeric value is too large (overflow, 2147483648, int)."},
      {"-2147483649", "Numeric value is too small (underflow, -2147483649, int)."},
      {"2147483647.5", "Numeric value is too large (overflow, 2147483647.5, int)."},
      {" 1e10", "Numeric value is too large (overflow,  1e10, int)."},
      {"-99999999999999999999", "Numeric value is too small (underflow, -99999999999999999999, int)."},
      {"", "StringConvert(,long double,1)."},
      {" ", "StringConvert( ,long double,1)."},
      {"abc", "StringConvert(abc,long double,1)."},
      {"42x", "StringConvert(42x,long double,1)."},
      {"42 ", "StringConvert(42 ,long double,1)."},
      {"1,2", "StringConvert(1,2,long double,1)."},
      {"1.5", "StringConvert(1.5,int,1)."},
      {"1e3", "StringConvert(1e3,int,1)."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    std::string message = "read as ";
    try {
      message += std::to_string(ParseInteger(row.text));
    } catch (const BadConversionException& exception) {
      message = exception.what();
    }
    EXPECT_EQ(message, row.message);
  }
}

}  // namespace
}  // namespace kelsd
