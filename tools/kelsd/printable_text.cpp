#include "printable_text.h"

namespace kelsd_tool {

std::string PrintableText(const std::string& text) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string printable;
  printable.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20U && byte != 0x7FU) {
      printable += c;
    } else {
      printable += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
    }
  }
  return printable;
}

}  // namespace kelsd_tool
