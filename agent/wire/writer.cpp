#include "wire/writer.h"

namespace slp {
namespace {

// Byte `index` of a big-endian number of `size` bytes.
std::uint8_t ByteOf(std::size_t value, std::size_t size, std::size_t index) {
  return static_cast<std::uint8_t>(value >> (8 * (size - 1 - index)) & 0xFF);
}

}  // namespace

void Writer::Text(std::string_view text) {
  bytes_.insert(bytes_.end(), text.begin(), text.end());
}

void Writer::Block(std::span<const std::uint8_t> block) {
  bytes_.insert(bytes_.end(), block.begin(), block.end());
}

void Writer::PatchU24(std::size_t position, std::size_t value) {
  if (value > 0xFFFFFF) {
    failed_ = true;
    return;
  }
  for (std::size_t index = 0; index < 3; ++index) {
    bytes_.at(position + index) = ByteOf(value, 3, index);
  }
}

void Writer::Number(std::size_t value, std::size_t size) {
  // A four-byte number fills a 32-bit std::size_t: there is nothing left to compare then.
  if (size < sizeof(value) && value >> (8 * size) != 0) {
    failed_ = true;
    return;
  }
  for (std::size_t index = 0; index < size; ++index) {
    bytes_.push_back(ByteOf(value, size, index));
  }
}

}  // namespace slp
