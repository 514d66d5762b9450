// The lines of a property file or registration file (RFC 2614 sections 2.1 and 2.2). Pure functions; any
// thread.
#pragma once

#include <string_view>
#include <vector>

namespace slp {

struct FileLine {
  int number = 0;         ///< from 1 on
  std::string_view text;  ///< without white space at both ends
  bool operator==(const FileLine&) const = default;
};

/// The lines that are no comments (`#` or `;`), blank ones among them, as parts of `text`. A line ends with
/// LF, CR or both; a byte order mark before the first is no part of it.
std::vector<FileLine> SplitFileLines(std::string_view text);

}  // namespace slp
