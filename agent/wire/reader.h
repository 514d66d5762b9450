// The one place where bytes of a message are read: every step is checked against the end. Values; any thread,
// one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "wire/messages.h"

namespace slp {

/// Reads big-endian numbers and counted texts from front to back. The first step that does not find all of
/// its bytes fails, and with it every later one: they yield 0 or an empty text and take nothing. So a row of
/// reads needs one look at failed() behind it.
class Reader {
 public:
  /// The bytes must outlive the reader.
  explicit Reader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U24() { return Number(3); }
  std::uint32_t U32() { return Number(4); }

  /// The next `size` bytes as a view of the input; empty when there are fewer.
  std::span<const std::uint8_t> Take(std::size_t size);

  /// The next `size` bytes as a copy.
  std::string Text(std::size_t size);
  Bytes Block(std::size_t size);

  std::size_t remaining() const { return rest_.size(); }
  bool failed() const { return failed_; }

  /// For a value that was read but cannot be.
  void Fail() { failed_ = true; }

 private:
  std::uint32_t Number(std::size_t size);

  std::span<const std::uint8_t> rest_;
  bool failed_ = false;
};

}  // namespace slp
