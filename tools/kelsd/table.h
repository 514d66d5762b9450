// A text table for people: columns as wide as their content, cut to the terminal where that is narrower.
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace kelsd_tool {

struct Column {
  std::string title;
  bool right_aligned = false;
  bool optional = false;  ///< left out first when the terminal is too narrow
};

class Table {
 public:
  explicit Table(std::vector<Column> columns);

  /// One cell a column; control characters are shown, see PrintableText.
  void AddRow(std::vector<std::string> cells);

  /// `width`: columns of the terminal; none: nothing is left out or cut.
  void Print(std::ostream& out, std::optional<int> width) const;

 private:
  std::vector<std::size_t> ContentWidths() const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace kelsd_tool
