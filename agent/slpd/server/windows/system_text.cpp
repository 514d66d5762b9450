#include "slpd/server/windows/system_text.h"

#include <system_error>

namespace slp {

std::string SystemText(std::uint32_t code) {
  std::string text = std::system_category().message(static_cast<int>(code));
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) {
    text.pop_back();
  }
  return text + " (" + std::to_string(code) + ")";
}

}  // namespace slp
