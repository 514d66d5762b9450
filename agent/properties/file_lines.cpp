#include "properties/file_lines.h"

#include <algorithm>

#include "text/fold.h"

namespace slp {
namespace {

/// Takes the first line, with its end, off `text`.
std::string_view TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  text.remove_prefix(line.size());
  text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, text.size()));
  return line;
}

}  // namespace

std::vector<FileLine> SplitFileLines(std::string_view text) {
  // Editors on Windows begin a UTF-8 file with this mark.
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::vector<FileLine> lines;
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = Trim(TakeLine(text));
    if (line.empty() || (line.front() != '#' && line.front() != ';')) {
      lines.push_back({number, line});
    }
  }
  return lines;
}

}  // namespace slp
