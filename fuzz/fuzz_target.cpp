#include "fuzz/fuzz_target.h"

#include <cstdlib>
#include <iostream>

namespace slp::fuzz {

void Require(bool holds, std::string_view claim) {
  if (!holds) {
    std::cerr << "does not hold: " << claim << std::endl;
    std::abort();
  }
}

std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

std::pair<std::string_view, std::string_view> FirstLineAndRest(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? std::pair(text, std::string_view())
                                       : std::pair(text.substr(0, end), text.substr(end + 1));
}

}  // namespace slp::fuzz
