#include "platform/windows/system_error.h"

#include <windows.h>

#include <array>

namespace kelsd::platform {

std::string SystemErrorText(std::uint32_t code) {
  constexpr DWORD kUserDefaultLanguage = 0x400;
  std::array<char, 2048> buffer{};
  const DWORD length =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                     kUserDefaultLanguage, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
  return length == 0 ? "Unknown error." : std::string(buffer.data(), length);
}

}  // namespace kelsd::platform
