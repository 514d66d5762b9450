#include "properties/property_file.h"

#include "properties/file_lines.h"
#include "text/fold.h"

namespace slp {

std::vector<PropertyLine> ParsePropertyLines(std::string_view text) {
  std::vector<PropertyLine> lines;
  for (const auto& [number, line] : SplitFileLines(text)) {
    if (line.empty()) {
      continue;
    }
    const std::size_t equals = line.find('=');
    const std::string_view key =
        equals == std::string_view::npos ? std::string_view() : Trim(line.substr(0, equals));
    if (key.empty()) {
      lines.push_back({number, {}, {}});
      continue;
    }
    const std::string_view value = Trim(line.substr(equals + 1));
    if (!value.empty()) {
      lines.push_back({number, std::string(key), std::string(value)});
    }
  }
  return lines;
}

}  // namespace slp
