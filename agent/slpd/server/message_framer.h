// Cuts the bytes of a TCP connection into SLP messages (RFC 2608 section 6.2). Holds what came, never what a
// header merely claims. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "wire/messages.h"

namespace slp {

class MessageFramer {
 public:
  enum class State {
    kIncomplete,  ///< more bytes must come first
    kMessage,
    kLast,     ///< what came can't be cut any further (no SLPv2 header): answer it as it is, then close
    kTooLong,  ///< the header announces more than the limit: close
  };

  explicit MessageFramer(std::size_t limit) : limit_(limit) {}

  void Append(std::span<const std::uint8_t> bytes);

  /// The next whole message; `message` stays valid until the next Append or Release. Each is given out once.
  State Next(std::span<const std::uint8_t>& message);

  /// Bytes held that Next has not given out.
  std::size_t pending() const { return bytes_.size() - begin_; }

  /// Bytes of memory in use.
  std::size_t held() const { return bytes_.capacity(); }

  /// Gives back the memory of a long message once nothing is pending.
  void Release();

 private:
  std::size_t limit_;
  Bytes bytes_;
  std::size_t begin_ = 0;
};

}  // namespace slp
