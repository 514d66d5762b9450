#include "printable_text.h"

#include <algorithm>
#include <cstddef>

namespace kelsd_tool {
namespace {

unsigned char ByteAt(const std::string& text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool IsWithin(unsigned char byte, unsigned char lowest, unsigned char highest) {
  return byte >= lowest && byte <= highest;
}

// Bytes of the UTF-8 character that begins there, 0 when none does (RFC 3629 section 4).
std::size_t CharacterLength(const std::string& text, std::size_t at) {
  struct Row {
    unsigned char first_from, first_to, second_from, second_to;
    std::size_t length;
  };
  static constexpr Row kRows[] = {
      {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3},
      {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
      {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
  };
  if (ByteAt(text, at) < 0x80) {
    return 1;
  }
  for (const Row& row : kRows) {
    if (IsWithin(ByteAt(text, at), row.first_from, row.first_to) &&
        IsWithin(ByteAt(text, at + 1), row.second_from, row.second_to) &&
        (row.length < 3 || IsWithin(ByteAt(text, at + 2), 0x80, 0xBF)) &&
        (row.length < 4 || IsWithin(ByteAt(text, at + 3), 0x80, 0xBF))) {
      return row.length;
    }
  }
  return 0;
}

bool IsControl(const std::string& text, std::size_t at) {
  const unsigned char first = ByteAt(text, at);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && ByteAt(text, at + 1) < 0xA0);
}

std::string HexDigits(unsigned char byte) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  return {kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
}

}  // namespace

std::string PrintableText(const std::string& text) {
  std::string printable;
  printable.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = CharacterLength(text, at);
    if (length != 0 && !IsControl(text, at)) {
      printable.append(text, at, length);
      at += length;
    } else {
      printable += "\\x" + HexDigits(ByteAt(text, at));
      ++at;
    }
  }
  return printable;
}

std::string OneLine(const std::string& text) {
  constexpr const char* kBlank = " \t\r\n";
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of(kBlank, at), text.size());
    const std::string blanks = text.substr(at, end - at);
    line += blanks.find_first_of("\r\n") == std::string::npos ? blanks : " ";
    const std::size_t next = std::min(text.find_first_of(kBlank, end), text.size());
    line += text.substr(end, next - end);
    at = next;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

// Such characters stand within texts only: outside of them the document has none but blanks and line ends.
std::string PrintableJson(const std::string& document) {
  std::string printable;
  printable.reserve(document.size());
  for (std::size_t at = 0; at < document.size(); ++at) {
    const unsigned char byte = ByteAt(document, at);
    if (byte == 0x7F) {
      printable += "\\u007F";
    } else if (byte == 0xC2 && ByteAt(document, at + 1) < 0xA0) {
      ++at;
      printable += "\\u00" + HexDigits(ByteAt(document, at));
    } else {
      printable += document[at];
    }
  }
  return printable;
}

}  // namespace kelsd_tool
