// Messages with the bytes that they are on the wire, laid out by hand after the diagrams of RFC 2608.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "wire/messages.h"

namespace slp {

struct GoldenMessage {
  std::string name;  ///< letters only
  Bytes bytes;
  Message message;
};

inline void PrintTo(const GoldenMessage& golden, std::ostream* out) {
  *out << golden.name;
}

/// Every kind of message at least once, and every part that a message can have.
const std::vector<GoldenMessage>& GoldenMessages();

/// The bytes of a literal, without its closing zero; so that numbers and texts can stand side by side.
template <std::size_t kSize>
Bytes ToBytes(const char (&literal)[kSize]) {
  Bytes bytes;
  for (const char character : std::string(literal, kSize - 1)) {
    bytes.push_back(static_cast<std::uint8_t>(character));
  }
  return bytes;
}

}  // namespace slp
