// The syntax of a property file (RFC 2614 section 2.1): one `key = value` a line. Pure functions; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace slp {

struct PropertyLine {
  int number = 0;   ///< from 1 on
  std::string key;  ///< empty: the line is neither blank nor a comment, and sets nothing either
  std::string value;
  bool operator==(const PropertyLine&) const = default;
};

/// The lines that set something, or ought to, in their order. Blanks around key and value are no part of
/// them; blank lines, comments (`#` or `;`) and keys without a value, which leave all as it was, are left
/// out. A line ends with LF, CR or both.
std::vector<PropertyLine> ParsePropertyLines(std::string_view text);

}  // namespace slp
