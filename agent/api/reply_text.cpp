#include "api/reply_text.h"

#include <algorithm>

namespace slp::client {

bool IsSaneUrl(std::string_view url) {
  return !url.empty() && std::none_of(url.begin(), url.end(), [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code <= 0x20 || code == 0x7F;
  });
}

bool IsWholeText(std::string_view text) {
  return text.find('\0') == std::string_view::npos;
}

}  // namespace slp::client
