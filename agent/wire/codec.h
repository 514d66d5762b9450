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

/// What the count of a service reply can say.
inline constexpr std::size_t kMaximumUrlEntries = 0xFFFF;

/// What can be told of a message from its first bytes, also when the rest does not decode.
struct HeaderPeek {
  std::uint8_t version = 0;
  std::uint8_t function = 0;
  std::size_t length = 0;  ///< of the whole message, as the header says
  bool overflow = false;
  bool fresh = false;
  bool request_multicast = false;
  std::size_t extension_offset = 0;  ///< of the first extension, from the message's beginning; 0: none
  std::uint16_t xid = 0;
  bool operator==(const HeaderPeek&) const = default;
};

/// Needs the first 12 bytes; none when there are fewer. For TCP framing and for error replies. `bytes` may
/// hold less than the whole message.
std::optional<HeaderPeek> PeekHeader(std::span<const std::uint8_t> bytes);

/// One whole message. kVersionNotSupported for another version than 2, kMessageNotSupported for an unknown
/// function, kOptionNotUnderstood for an unknown mandatory extension (RFC 2608 section 9.1), kParseError for
/// everything else that is not exactly a message: a length that disagrees with `bytes`, a field that reaches
/// past the end, bytes that belong to no field, an extension chain that points backwards or outside. Two
/// kinds of message may end early, behind their error code: a reply with the overflow flag, whose length may
/// also be that of the uncut message, and one that reports an error (section 7). What is whole of them is
/// returned, so an advertisement with the overflow flag says nothing by a field that is empty. Texts are not
/// looked into. Reserved bits are ignored. Never reads outside `bytes`; what it allocates is bounded by their
/// number.
Result<Message> Decode(std::span<const std::uint8_t> bytes);

/// kInternalError when a text is longer than its 16-bit length field, a list than its count, or the message
/// longer than 24 bits can say.
Result<Bytes> Encode(const Message& message);

/// The message, when it fits into `limit` bytes. Otherwise a reply goes without extensions and with the
/// overflow flag set: a service reply with as many of its first URL entries as fit, one of another kind with
/// its error and empty fields (a DaAdvert keeps its boot timestamp, because 0 would announce its end). Never
/// cut inside a field. kInternalError when not even that fits, and for a request, which has to go by TCP
/// then.
Result<Bytes> EncodeWithin(const Message& message, std::size_t limit);

/// A reply with nothing but its error and the overflow flag, which sends the other side to TCP (a DaAdvert
/// keeps its boot timestamp). kInternalError when not even that fits into `limit` bytes, and for a request.
Result<Bytes> EncodeBare(const Message& message, std::size_t limit);

}  // namespace slp
