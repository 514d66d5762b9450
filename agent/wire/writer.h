// The one place where bytes of a message are written. Values; any thread, one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "wire/messages.h"

namespace slp {

/// Appends big-endian numbers and counted texts. A number that does not fit its field fails the writer for
/// good, so that a row of writes needs one look at failed() behind it; what has been written then is worth
/// nothing.
class Writer {
 public:
  void U8(std::size_t value) { Number(value, 1); }
  void U16(std::size_t value) { Number(value, 2); }
  void U24(std::size_t value) { Number(value, 3); }
  void U32(std::size_t value) { Number(value, 4); }

  void Text(std::string_view text);
  void Block(std::span<const std::uint8_t> block);

  /// Overwrites three bytes that have been written already.
  void PatchU24(std::size_t position, std::size_t value);

  std::size_t size() const { return bytes_.size(); }
  bool failed() const { return failed_; }

  /// For a value that no field can say.
  void Fail() { failed_ = true; }

  Bytes Release() { return std::move(bytes_); }

 private:
  void Number(std::size_t value, std::size_t size);

  Bytes bytes_;
  bool failed_ = false;
};

}  // namespace slp
