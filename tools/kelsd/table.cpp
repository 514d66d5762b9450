#include "table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "printable_text.h"

namespace kelsd_tool {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 8;
constexpr const char* kCutMark = "...";

// Bytes that begin a character: continuation bytes of UTF-8 take no column.
std::size_t DisplayWidth(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string Cut(const std::string& text, std::size_t width) {
  if (DisplayWidth(text) <= width) {
    return text;
  }
  std::string cut;
  std::size_t used = 0;
  for (const char c : text) {
    const bool begins = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    if (begins && used + 1 > width - 3) {
      break;
    }
    used += begins ? 1 : 0;
    cut += c;
  }
  return cut + kCutMark;
}

std::size_t LineWidth(const std::vector<std::size_t>& widths, const std::vector<std::size_t>& shown) {
  const std::size_t content =
      std::accumulate(shown.begin(), shown.end(), std::size_t{0},
                      [&widths](std::size_t sum, std::size_t column) { return sum + widths[column]; });
  return shown.empty() ? 0 : content + kGap * (shown.size() - 1);
}

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

void Table::AddRow(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  std::transform(cells.begin(), cells.end(), cells.begin(), PrintableText);
  rows_.push_back(std::move(cells));
}

std::vector<std::size_t> Table::ContentWidths() const {
  std::vector<std::size_t> widths;
  widths.reserve(columns_.size());
  for (const Column& column : columns_) {
    widths.push_back(DisplayWidth(column.title));
  }
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    }
  }
  return widths;
}

// 1. Every column is as wide as its widest cell.
// 2. Too wide for the terminal: optional columns go, the last one first.
// 3. Still too wide: the widest column gives way, never below kNarrowest.
void Table::Print(std::ostream& out, std::optional<int> width) const {
  std::vector<std::size_t> widths = ContentWidths();
  std::vector<std::size_t> shown(columns_.size());
  std::iota(shown.begin(), shown.end(), std::size_t{0});
  if (width) {
    const auto limit = static_cast<std::size_t>(std::max(*width, 1));
    for (std::size_t i = columns_.size(); i-- > 0 && LineWidth(widths, shown) > limit;) {
      if (columns_[i].optional) {
        shown.erase(std::find(shown.begin(), shown.end(), i));
      }
    }
    const std::size_t line = LineWidth(widths, shown);
    if (line > limit && !shown.empty()) {
      const std::size_t widest =
          *std::max_element(shown.begin(), shown.end(),
                            [&widths](std::size_t a, std::size_t b) { return widths[a] < widths[b]; });
      const std::size_t excess = line - limit;
      widths[widest] = std::max(kNarrowest, widths[widest] > excess ? widths[widest] - excess : 0);
    }
  }

  const auto print_line = [&](const auto& cell_of) {
    std::string line;
    for (std::size_t position = 0; position < shown.size(); ++position) {
      const std::size_t column = shown[position];
      const std::string cell = Cut(cell_of(column), widths[column]);
      const std::string padding(widths[column] - DisplayWidth(cell), ' ');
      line += columns_[column].right_aligned ? padding + cell : cell + padding;
      line += position + 1 < shown.size() ? std::string(kGap, ' ') : "";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };
  print_line([this](std::size_t column) { return columns_[column].title; });
  for (const auto& row : rows_) {
    print_line([&row](std::size_t column) { return row[column]; });
  }
}

}  // namespace kelsd_tool
