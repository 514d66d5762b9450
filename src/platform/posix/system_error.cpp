#include "platform/system_error.h"

#include <cstring>
#include <system_error>

namespace kelsd::platform {

std::string SystemErrorText(std::uint32_t code) {
  const std::string text = std::generic_category().message(static_cast<int>(code));
  return text.empty() || text.rfind("Unknown error", 0) == 0 ? "Unknown error." : text;
}

}  // namespace kelsd::platform
