#include "wire/reader.h"

namespace slp {

std::span<const std::uint8_t> Reader::Take(std::size_t size) {
  if (failed_ || size > rest_.size()) {
    failed_ = true;
    return {};
  }
  const std::span<const std::uint8_t> taken = rest_.first(size);
  rest_ = rest_.subspan(size);
  return taken;
}

std::string Reader::Text(std::size_t size) {
  const std::span<const std::uint8_t> taken = Take(size);
  return {taken.begin(), taken.end()};
}

Bytes Reader::Block(std::size_t size) {
  const std::span<const std::uint8_t> taken = Take(size);
  return {taken.begin(), taken.end()};
}

std::uint32_t Reader::Number(std::size_t size) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : Take(size)) {
    number = number << 8 | byte;
  }
  return number;
}

}  // namespace slp
