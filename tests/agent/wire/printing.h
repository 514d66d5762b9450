// Lets GoogleTest show messages and results as text. Included by tests that compare them.
#pragma once

#include <ostream>

#include "wire/codec.h"

namespace slp {

inline void PrintTo(Error error, std::ostream* out) {
  *out << "error " << static_cast<int>(error);
}

inline void PrintTo(const Message& message, std::ostream* out) {
  const Header& header = message.header;
  *out << "function " << static_cast<int>(message.function()) << (header.overflow ? " overflow" : "")
       << (header.fresh ? " fresh" : "") << (header.request_multicast ? " multicast" : "") << " xid "
       << header.xid << " language \"" << header.language << "\" extensions " << header.extensions.size();
  if (const Result<Bytes> bytes = Encode(message)) {
    *out << " bytes " << ::testing::PrintToString(*bytes);
  }
}

template <typename T>
void PrintTo(const Result<T>& result, std::ostream* out) {
  *out << (result ? ::testing::PrintToString(*result) : ::testing::PrintToString(result.error()));
}

/// The result is a value, and this one.
MATCHER_P(Holds, value, "") {
  return arg.ok() && *arg == value;
}

/// The result is an error, and this one.
MATCHER_P(Fails, error, "") {
  return !arg.ok() && arg.error() == error;
}

}  // namespace slp
