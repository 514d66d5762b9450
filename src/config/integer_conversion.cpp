#include "config/integer_conversion.h"

#include <limits>

#include "foundation/conversions.h"

namespace kelsd {

int ParseInteger(const std::string& text) {
  // Read as a floating value first: this tells a number out of range from a text that is no number.
  long double number = 0;
  StringConvert<long double>(text, number, true);
  if (number < std::numeric_limits<int>::min()) {
    throw BadConversionException("Numeric value is too small (underflow, " + text + ", int).");
  }
  if (number > std::numeric_limits<int>::max()) {
    throw BadConversionException("Numeric value is too large (overflow, " + text + ", int).");
  }
  int value = 0;
  StringConvert<int>(text, value, true);
  return value;
}

}  // namespace kelsd
