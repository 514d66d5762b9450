// Messages to and from bytes (RFC 2608 section 8). Pure functions; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "base/error.h"
#include "wire/messages.h"

namespace slp {

inline constexpr std::size_t kMaximumMessageLength = 0xFFFFFF;

/// What can be told of a message from its first bytes, also when the rest does not decode.
struct HeaderPeek {
  std::uint8_t version = 0;
  std::uint8_t function = 0;
  std::size_t length = 0;  ///< of the whole message, as the header says
  bool overflow = false;
  bool request_multicast = false;
  std::uint16_t xid = 0;
};

/// Needs the first 12 bytes; none when there are fewer. For TCP framing and for error replies. `bytes` may hold less
/// than the whole message.
std::optional<HeaderPeek> PeekHeader(std::span<const std::uint8_t> bytes);

/// One whole message. kVersionNotSupported for another version than 2, kMessageNotSupported for an unknown function,
/// kOptionNotUnderstood for an unknown mandatory extension (RFC 2608 section 9.1), kParseError for everything else that is not exactly a
/// message: a length that disagrees with `bytes`, a field that reaches past the end, an extension chain that points
/// backwards. A message with the overflow flag may end early: what is whole of it is returned.
/// Never reads outside `bytes`; what it allocates is bounded by their number.
Result<Message> Decode(std::span<const std::uint8_t> bytes);

/// kInternalError when a text is longer than its 16-bit length field or the message longer than 24 bits can say.
Result<Bytes> Encode(const Message& message);

/// The most URL entries of `reply` that fit into `limit` bytes, with the overflow flag set when some are left out;
/// a reply of another kind that does not fit keeps only header, error and the overflow flag. Never cut inside a
/// field.
Result<Bytes> EncodeWithin(const Message& message, std::size_t limit);

}  // namespace slp
