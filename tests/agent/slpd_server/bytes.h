// Messages for the tests of this folder, as bytes and back.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "wire/codec.h"
#include "wire/messages.h"

namespace slp {

inline Bytes BytesOf(std::uint16_t xid, Body body) {
  Message message;
  message.header.xid = xid;
  message.body = std::move(body);
  auto bytes = Encode(message);
  EXPECT_TRUE(bytes.ok());
  return bytes.ok() ? std::move(bytes).value() : Bytes();
}

inline Bytes Joined(const Bytes& one, const Bytes& other) {
  Bytes joined = one;
  joined.insert(joined.end(), other.begin(), other.end());
  return joined;
}

/// A header that claims `length` bytes, with nothing behind it.
inline Bytes HeaderClaiming(std::size_t length) {
  return {2,
          1,
          static_cast<std::uint8_t>(length >> 16U),
          static_cast<std::uint8_t>(length >> 8U),
          static_cast<std::uint8_t>(length),
          0,
          0,
          0,
          0,
          0,
          0,
          7,
          0,
          2};
}

}  // namespace slp
