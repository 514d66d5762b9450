// Typed values to text and back, through string streams. Stateless: any thread may call it.
//
// The library converts unsigned short, bool, int and 64-bit unsigned numbers to text, and unsigned short, int
// and long double from text. Streams use the classic locale: what goes on the wire and into files must not
// depend on a locale that the application has set.
#pragma once

#include <ios>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "foundation/text.h"
#include "foundation/type_name.h"

namespace kelsd {

/// A value that could not be turned into text, or a text that is no value of the wanted type. The message
/// names the failing call with its arguments.
class BadConversionException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

namespace internal {

/// Enough decimal digits to bring every double back unchanged.
constexpr int kConversionPrecision = 17;

}  // namespace internal

/// The text of `value`: numbers in decimal, bool as "0" or "1".
/// Throws BadConversionException "Stringify(TYPE)" when the stream reports failure.
template <typename T>
std::string Stringify(const T& value) {
  std::ostringstream stream(std::ios_base::out);
  stream.imbue(std::locale::classic());
  stream.precision(internal::kConversionPrecision);
  stream << value;
  if (stream.fail()) {
    throw BadConversionException("Stringify(" + ReadableTypeName(typeid(T)) + ")");
  }
  return stream.str();
}

/// Reads `text` into `value`: leading white space is skipped, what follows the number is refused when
/// `reject_trailing` is true and ignored otherwise. A number outside the range of the type is refused, a
/// negative one for an unsigned type included. Throws BadConversionException
/// "StringConvert(TEXT,TYPE,FLAG)."; `value` then holds whatever the stream left there.
template <typename T>
void StringConvert(const std::string& text, T& value, bool reject_trailing) {
  std::istringstream stream(text, std::ios_base::in);
  stream.imbue(std::locale::classic());
  stream.precision(internal::kConversionPrecision);
  stream >> value;
  bool converted = !stream.fail();
  if constexpr (std::is_unsigned_v<T>) {
    // Some streams wrap a negative number round into the range of the type.
    converted = converted && (value == 0 || TrimLeft(text).front() != '-');
  }
  if (converted && reject_trailing) {
    converted = stream.get() == std::istringstream::traits_type::eof();
  }
  if (!converted) {
    throw BadConversionException("StringConvert(" + text + "," + ReadableTypeName(typeid(T)) + "," +
                                 Stringify<bool>(reject_trailing) + ").");
  }
}

}  // namespace kelsd
