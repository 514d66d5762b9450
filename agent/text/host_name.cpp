#include "text/host_name.h"

namespace slp {

bool IsHostName(std::string_view text) {
  constexpr std::string_view kLettersAndHyphen = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-";
  constexpr std::string_view kDigits = "0123456789";
  for (const char character : text) {
    if (character != '.' && kLettersAndHyphen.find(character) == std::string_view::npos &&
        kDigits.find(character) == std::string_view::npos) {
      return false;
    }
  }
  const std::string_view last = text.substr(text.rfind('.') + 1);
  return !text.starts_with('.') && last.find_first_not_of(kDigits) != std::string_view::npos;
}

}  // namespace slp
