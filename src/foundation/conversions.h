// Typed values to text and back, as string streams do it. Stateless: any thread may call it.
//
// The library converts unsigned short, bool, int and 64-bit unsigned numbers to text, and unsigned short, int
// and long double from text. Streams use the classic locale: what goes on the wire and into files must not
// depend on a locale that the application has set.
#pragma once

#include <charconv>
#include <ios>
#include <locale>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
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

namespace internal {

/// Whether `text` begins with a value of the type, and whether nothing stands behind it.
template <typename T>
bool Extract(const std::string& text, T& value, bool& at_end) {
  std::istringstream stream(text, std::ios_base::in);
  stream.imbue(std::locale::classic());
  stream.precision(kConversionPrecision);
  stream >> value;
  bool converted = !stream.fail();
  if constexpr (std::is_unsigned_v<T>) {
    // Some streams wrap a negative number round into the range of the type.
    converted = converted && (value == 0 || TrimLeft(text).front() != '-');
  }
  at_end = converted && stream.get() == std::istringstream::traits_type::eof();
  return converted;
}

/// The same texts are numbers as for a stream, which won't do here: on some systems it sets the locale of the
/// whole process for the time of its reading.
inline bool Extract(const std::string& text, long double& value, bool& at_end) {
  const std::string trimmed = TrimLeft(text);
  std::string_view number = trimmed;
  if (number.starts_with('+')) {
    number.remove_prefix(1);
  }
  const std::size_t first = number.starts_with('-') && number.size() == trimmed.size() ? 1 : 0;
  if (number.find_first_of("0123456789.", first) != first) {
    return false;
  }
  const char* const end = number.data() + number.size();
  const std::from_chars_result read = std::from_chars(number.data(), end, value);
  if (read.ec == std::errc::not_enough_memory) {
    throw std::bad_alloc();
  }
  at_end = read.ptr == end;
  return read.ec == std::errc();
}

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
/// "StringConvert(TEXT,TYPE,FLAG)."; `value` then holds whatever was found there.
template <typename T>
void StringConvert(const std::string& text, T& value, bool reject_trailing) {
  bool at_end = false;
  const bool converted = internal::Extract(text, value, at_end);
  if (!converted || (reject_trailing && !at_end)) {
    throw BadConversionException("StringConvert(" + text + "," + ReadableTypeName(typeid(T)) + "," +
                                 Stringify<bool>(reject_trailing) + ").");
  }
}

}  // namespace kelsd
