// The syntax of a property file (RFC 2614 section 2.1): one `key = value` a line. Pure but for the file that
// is read; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace slp {

struct PropertyLine {
  int number = 0;  ///< from 1 on
  std::string key;
  std::string value;
  bool operator==(const PropertyLine&) const = default;
};

/// The lines that set something, in their order. Blanks around key and value are no part of them; comments
/// (`#` or `;`) and lines without `=`, key or value are left out. A line ends with LF, CR or both.
std::vector<PropertyLine> ParsePropertyLines(std::string_view text);

/// The lines of a file; none when it cannot be opened for reading.
std::optional<std::vector<PropertyLine>> ReadPropertyFile(const std::string& path);

}  // namespace slp
