#include "properties/property_file.h"

#include <fstream>
#include <iterator>

#include "properties/property_values.h"

namespace slp {
namespace {

// Takes the first line, with its end, off `text`.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t size = text.find_first_of("\r\n");
  const std::string_view line = text.substr(0, size);
  if (size == std::string_view::npos) {
    text = {};
  } else {
    text.remove_prefix(text.substr(size, 2) == "\r\n" ? size + 2 : size + 1);
  }
  return line;
}

}  // namespace

std::vector<PropertyLine> ParsePropertyLines(std::string_view text) {
  // Editors on Windows begin a UTF-8 file with this mark.
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::vector<PropertyLine> lines;
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = TrimBlanks(TakeLine(text));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.front() == '#' || line.front() == ';') {
      continue;
    }
    const std::string_view key = TrimBlanks(line.substr(0, equals));
    const std::string_view value = TrimBlanks(line.substr(equals + 1));
    if (!key.empty() && !value.empty()) {
      lines.push_back({number, std::string(key), std::string(value)});
    }
  }
  return lines;
}

std::optional<std::vector<PropertyLine>> ReadPropertyFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) {
    return std::nullopt;
  }
  // On some systems a folder opens like a file and fails only when it is read.
  file.peek();
  if (file.bad()) {
    return std::nullopt;
  }
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return ParsePropertyLines(text);
}

}  // namespace slp
