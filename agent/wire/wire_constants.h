// Numbers of the wire format that reading and writing share (RFC 2608 sections 8 to 10). Constants; any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace slp {

inline constexpr std::uint8_t kProtocolVersion = 2;

inline constexpr std::uint16_t kFlagOverflow = 0x8000;
inline constexpr std::uint16_t kFlagFresh = 0x4000;
inline constexpr std::uint16_t kFlagRequestMulticast = 0x2000;

/// Where a header holds the message's length and the offset of the first extension.
inline constexpr std::size_t kLengthPosition = 2;
inline constexpr std::size_t kExtensionOffsetPosition = 7;

/// A header up to and with its transaction id, and up to its language tag.
inline constexpr std::size_t kPeekedHeaderSize = 12;
inline constexpr std::size_t kFixedHeaderSize = 14;

/// An extension's id and the offset of the next one.
inline constexpr std::size_t kExtensionHeadSize = 5;

/// An authentication block's descriptor and length, which its length counts in.
inline constexpr std::size_t kAuthenticationHeadSize = 4;

/// A length of the naming authority that is none: all authorities.
inline constexpr std::uint16_t kAllNamingAuthorities = 0xFFFF;

}  // namespace slp
