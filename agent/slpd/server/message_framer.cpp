#include "slpd/server/message_framer.h"

#include <algorithm>

#include "wire/codec.h"

namespace slp {
namespace {

constexpr std::uint8_t kVersion = 2;
// The fixed part of the header with the length of its language tag (RFC 2608 section 8).
constexpr std::size_t kShortestMessage = 14;
constexpr std::size_t kKeptCapacity = 16384;

}  // namespace

void MessageFramer::Append(std::span<const std::uint8_t> bytes) {
  if (begin_ > 0) {
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(begin_));
    begin_ = 0;
  }
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

MessageFramer::State MessageFramer::Next(std::span<const std::uint8_t>& message) {
  const std::span<const std::uint8_t> rest = std::span<const std::uint8_t>(bytes_).subspan(begin_);
  const auto header = PeekHeader(rest);
  if (!header) {
    return State::kIncomplete;
  }
  if (header->version != kVersion || header->length < kShortestMessage) {
    begin_ = bytes_.size();
    message = rest;
    return State::kLast;
  }
  if (header->length > limit_) {
    return State::kTooLong;
  }
  if (rest.size() < header->length) {
    return State::kIncomplete;
  }
  message = rest.first(header->length);
  begin_ += header->length;
  return State::kMessage;
}

void MessageFramer::Release() {
  if (pending() == 0) {
    bytes_.clear();
    begin_ = 0;
    if (bytes_.capacity() > kKeptCapacity) {
      bytes_.shrink_to_fit();
    }
  }
}

}  // namespace slp
