#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "agent/wire/golden_messages.h"
#include "agent/wire/printing.h"
#include "wire/codec.h"

namespace slp {
namespace {

class GoldenTest : public testing::TestWithParam<GoldenMessage> {};

TEST_P(GoldenTest, Decodes) {
  EXPECT_THAT(Decode(GetParam().bytes), Holds(GetParam().message));
}

TEST_P(GoldenTest, Encodes) {
  EXPECT_THAT(Encode(GetParam().message), Holds(GetParam().bytes));
}

TEST_P(GoldenTest, FitsWithinItsOwnLength) {
  EXPECT_THAT(EncodeWithin(GetParam().message, GetParam().bytes.size()), Holds(GetParam().bytes));
}

TEST_P(GoldenTest, HeaderCanBePeekedFromItsFirstTwelveBytes) {
  const Message& message = GetParam().message;
  const Bytes& bytes = GetParam().bytes;
  const HeaderPeek expected{.version = 2,
                            .function = static_cast<std::uint8_t>(message.function()),
                            .length = bytes.size(),
                            .overflow = message.header.overflow,
                            .fresh = message.header.fresh,
                            .request_multicast = message.header.request_multicast,
                            .extension_offset = bytes[9],
                            .xid = message.header.xid};
  EXPECT_EQ(PeekHeader(bytes), expected);
  EXPECT_EQ(PeekHeader(std::span(bytes).first(12)), expected);
  EXPECT_EQ(PeekHeader(std::span(bytes).first(11)), std::nullopt);
}

// Wherever the bytes end, with the length left as it was or brought into line: never a message, but for
// replies that report an error, which may end behind it (RFC 2608 section 7).
TEST_P(GoldenTest, IsNoMessageWhenItEndsEarly) {
  const Bytes& whole = GetParam().bytes;
  const bool overflow = GetParam().message.header.overflow;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    bytes.shrink_to_fit();
    if (!overflow || size < 18) {
      EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
    }
    if (size < 5) {
      continue;
    }
    bytes[4] = static_cast<std::uint8_t>(size);
    if (overflow && size >= 18) {
      EXPECT_THAT(Decode(bytes), Holds(GetParam().message));
    } else if (GetParam().message.header.extensions.empty() || size < 5) {
      EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
    } else {
      // Where an extension's data ends only the length tells, so that a shorter one is a message too.
      const Result<Message> message = Decode(bytes);
      EXPECT_EQ(message.ok(),
                size >= whole.size() - GetParam().message.header.extensions.back().payload.size());
    }
  }
}

TEST_P(GoldenTest, TakesNoByteMore) {
  Bytes bytes = GetParam().bytes;
  bytes.push_back(0);
  EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
  if (GetParam().message.header.extensions.empty()) {
    bytes[4] = static_cast<std::uint8_t>(bytes.size());
    EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
  }
}

TEST_P(GoldenTest, IgnoresReservedBits) {
  Bytes bytes = GetParam().bytes;
  bytes[5] |= 0x1F;
  bytes[6] = 0xFF;
  EXPECT_THAT(Decode(bytes), Holds(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(EveryKind, GoldenTest, testing::ValuesIn(GoldenMessages()),
                         [](const auto& parameter) { return parameter.param.name; });

TEST(GoldenMessagesTest, HoldEveryKind) {
  std::set<FunctionId> functions;
  for (const GoldenMessage& golden : GoldenMessages()) {
    functions.insert(golden.message.function());
  }
  EXPECT_EQ(functions.size(), std::variant_size_v<Body>);
}

}  // namespace
}  // namespace slp
