// What is no message, and what is one although it ends early.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/wire/golden_messages.h"
#include "agent/wire/printing.h"
#include "wire/codec.h"

namespace slp {
namespace {

// A header in English with these flags, transaction id 1 and a length that agrees, and what follows it.
Bytes Assemble(FunctionId function, std::uint8_t flags, std::uint8_t extension_offset, const Bytes& rest) {
  Bytes bytes = ToBytes(
      "\x02\x00"
      "\x00\x00\x00"
      "\x00\x00"
      "\x00\x00\x00"
      "\x00\x01"
      "\x00\x02"
      "en");
  bytes[1] = static_cast<std::uint8_t>(function);
  bytes[5] = flags;
  bytes[9] = extension_offset;
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  bytes[4] = static_cast<std::uint8_t>(bytes.size());
  return bytes;
}

constexpr std::uint8_t kOverflow = 0x80;

Message Reply(Body body, bool overflow, std::vector<Extension> extensions = {}) {
  Message message;
  message.header.overflow = overflow;
  message.header.xid = 1;
  message.header.extensions = std::move(extensions);
  message.body = std::move(body);
  return message;
}

// An acknowledgment of 18 bytes and what follows it.
Bytes Acknowledgment(std::uint8_t extension_offset, const Bytes& rest) {
  Bytes content = {0, 0};
  content.insert(content.end(), rest.begin(), rest.end());
  return Assemble(FunctionId::kSrvAck, 0, extension_offset, content);
}

TEST(DecodeTest, OtherVersionsAreNotSupported) {
  for (const std::uint8_t version : {0, 1, 3, 255}) {
    Bytes bytes = Acknowledgment(0, {});
    bytes[0] = version;
    EXPECT_THAT(Decode(bytes), Fails(Error::kVersionNotSupported));
    bytes.resize(12);
    EXPECT_THAT(Decode(bytes), Fails(Error::kVersionNotSupported));
    bytes.resize(11);
    EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
  }
}

TEST(DecodeTest, UnknownFunctionsAreNotSupported) {
  for (const std::uint8_t function : {0, 12, 13, 255}) {
    Bytes bytes = Acknowledgment(0, {});
    bytes[1] = function;
    EXPECT_THAT(Decode(bytes), Fails(Error::kMessageNotSupported));
  }
}

TEST(DecodeTest, LengthMustBeThatOfTheBytes) {
  for (const int difference : {-18, -1, 1, 100}) {
    Bytes bytes = Acknowledgment(0, {});
    bytes[4] = static_cast<std::uint8_t>(bytes[4] + difference);
    EXPECT_THAT(Decode(bytes), Fails(Error::kParseError)) << difference;
  }
  Bytes bytes = Acknowledgment(0, {});
  bytes[2] = 1;
  EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
}

TEST(DecodeTest, LanguageTagMustEndWithinTheMessage) {
  Bytes bytes = Acknowledgment(0, {});
  bytes[13] = 5;
  EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
  bytes[12] = 0xFF;
  EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
}

TEST(DecodeTest, ReservedByteOfAUrlEntryIsIgnored) {
  Bytes bytes = GoldenMessages()[4].bytes;
  ASSERT_EQ(bytes[1], 3);
  bytes[16] = 0xFF;
  EXPECT_THAT(Decode(bytes), Holds(GoldenMessages()[4].message));
}

TEST(DecodeTest, AuthenticationBlocksCountTheirOwnHead) {
  for (std::uint8_t length = 0; length < 8; ++length) {
    const Bytes bytes = Assemble(FunctionId::kAttrRply, 0, 0, {0, 0, 0, 0, 1, 0, 2, 0, length, 0xAA});
    if (length == 5) {
      EXPECT_THAT(Decode(bytes), Holds(Reply(AttrRply{Error::kOk, "", {{2, {0xAA}}}}, false)));
    } else {
      EXPECT_THAT(Decode(bytes), Fails(Error::kParseError)) << int{length};
    }
  }
}

TEST(DecodeTest, CountsBelongToWhatFollows) {
  const Bytes entry = {0, 0, 9, 0, 1, 'u', 0};
  for (std::uint8_t count = 0; count < 4; ++count) {
    Bytes rest = {0, 0, 0, count};
    rest.insert(rest.end(), entry.begin(), entry.end());
    const Result<Message> message = Decode(Assemble(FunctionId::kSrvRply, 0, 0, rest));
    if (count == 1) {
      EXPECT_THAT(message, Holds(Reply(SrvRply{Error::kOk, {{9, "u", {}}}}, false)));
    } else {
      EXPECT_THAT(message, Fails(Error::kParseError)) << int{count};
    }
  }
}

TEST(DecodeTest, ErrorsThatTheRfcDoesNotNameAreKept) {
  const Bytes bytes = Assemble(FunctionId::kSrvAck, 0, 0, {0x12, 0x34});
  EXPECT_THAT(Decode(bytes), Holds(Reply(SrvAck{static_cast<Error>(0x1234)}, false)));
}

TEST(DecodeTest, BehindAnErrorNothingNeedsToFollow) {
  const Body bodies[] = {SrvRply{Error::kParseError, {}}, AttrRply{Error::kParseError, {}, {}},
                         SrvTypeRply{Error::kParseError, {}}};
  for (const Body& body : bodies) {
    const Message expected = Reply(body, false);
    EXPECT_THAT(Decode(Assemble(expected.function(), 0, 0, {0, 2})), Holds(expected));
    EXPECT_THAT(Decode(Assemble(expected.function(), 0, 0, {0, 2, 0})), Holds(expected));
    EXPECT_THAT(Decode(Assemble(expected.function(), 0, 0, {0, 2, 0, 9, 'a'})), Holds(expected));
    EXPECT_THAT(Decode(Assemble(expected.function(), 0, 0, {0})), Fails(Error::kParseError));
    EXPECT_THAT(Decode(Assemble(expected.function(), 0, 0, {0, 0})), Fails(Error::kParseError));
  }
  DaAdvert advert;
  advert.error = Error::kScopeNotSupported;
  EXPECT_THAT(Decode(Assemble(FunctionId::kDaAdvert, 0, 0, {0, 4})), Holds(Reply(advert, false)));
}

TEST(DecodeTest, AnErrorMayBeFollowedByExtensionsOnly) {
  const Bytes bytes = Assemble(FunctionId::kSrvRply, 0, 18, {0, 2, 0, 1, 0, 0, 0, 'x'});
  EXPECT_THAT(Decode(bytes), Holds(Reply(SrvRply{Error::kParseError, {}}, false, {{1, {'x'}}})));
}

TEST(DecodeTest, CutRepliesHoldWhatIsWholeOfThem) {
  const Bytes whole = GoldenMessages()[2].bytes;
  Message expected = GoldenMessages()[2].message;
  ASSERT_EQ(expected.function(), FunctionId::kSrvRply);
  expected.header.overflow = true;
  const std::vector<UrlEntry> entries = std::get<SrvRply>(expected.body).urls;
  // Behind header (19 bytes), error and count, the entries end at 42 and 74.
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SCOPED_TRACE(size);
    Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    if (size > 5) {
      bytes[5] = kOverflow;
    }
    if (size < 21) {
      EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
      continue;
    }
    const std::size_t count = size < 42 ? 0 : size < 74 ? 1 : 2;
    std::get<SrvRply>(expected.body)
        .urls.assign(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(count));
    EXPECT_THAT(Decode(bytes), Holds(expected)) << "with the length of the uncut message";
    bytes[4] = static_cast<std::uint8_t>(size);
    EXPECT_THAT(Decode(bytes), Holds(expected)) << "with its own length";
    bytes[4] = static_cast<std::uint8_t>(size - 1);
    EXPECT_THAT(Decode(bytes), Fails(Error::kParseError)) << "with a length that is too short";
  }
}

TEST(DecodeTest, OtherRepliesMayBeCutToo) {
  EXPECT_THAT(Decode(Assemble(FunctionId::kAttrRply, kOverflow, 0, {0, 0, 0, 9, 'a'})),
              Holds(Reply(AttrRply{}, true)));
  EXPECT_THAT(Decode(Assemble(FunctionId::kAttrRply, kOverflow, 0, {0, 0, 0, 1, 'a'})),
              Holds(Reply(AttrRply{Error::kOk, "a", {}}, true)));
  EXPECT_THAT(Decode(Assemble(FunctionId::kSrvTypeRply, kOverflow, 0, {0, 0})),
              Holds(Reply(SrvTypeRply{}, true)));
  EXPECT_THAT(Decode(Assemble(FunctionId::kDaAdvert, kOverflow, 0, {0, 0, 0, 0, 0, 7, 0})),
              Holds(Reply(DaAdvert{Error::kOk, 7, "", "", "", "", {}}, true)));
  EXPECT_THAT(Decode(Assemble(FunctionId::kSaAdvert, kOverflow, 0, {})), Holds(Reply(SaAdvert{}, true)));
  EXPECT_THAT(Decode(Assemble(FunctionId::kSrvAck, kOverflow, 0, {})), Fails(Error::kParseError));
}

TEST(DecodeTest, RequestsMayNotBeCut) {
  for (const GoldenMessage& golden : GoldenMessages()) {
    switch (golden.message.function()) {
      case FunctionId::kSrvRqst:
      case FunctionId::kSrvReg:
      case FunctionId::kSrvDereg:
      case FunctionId::kAttrRqst:
      case FunctionId::kSrvTypeRqst: {
        SCOPED_TRACE(golden.name);
        Bytes bytes = golden.bytes;
        bytes[5] |= kOverflow;
        EXPECT_TRUE(Decode(bytes).ok());
        bytes.pop_back();
        EXPECT_THAT(Decode(bytes), Fails(Error::kParseError));
        break;
      }
      default:
        break;
    }
  }
}

TEST(DecodeTest, ExtensionsBehindACutAreLeftOut) {
  const Bytes rest = {0, 0, 0, 0, /* at 20 */ 0, 1, 0, 0, 26, 'x', /* at 26 */ 0, 2, 0, 0, 0, 'y', 'z'};
  Bytes bytes = Assemble(FunctionId::kSrvTypeRply, kOverflow, 20, rest);
  ASSERT_EQ(bytes.size(), 33U);
  EXPECT_THAT(Decode(bytes), Holds(Reply(SrvTypeRply{}, true, {{1, {'x'}}, {2, {'y', 'z'}}})));
  for (std::size_t size = 32; size >= 18; --size) {
    bytes.resize(size);
    const std::vector<Extension> extensions =
        size >= 26 ? std::vector<Extension>{{1, {'x'}}} : std::vector<Extension>();
    EXPECT_THAT(Decode(bytes), Holds(Reply(SrvTypeRply{}, true, extensions))) << size;
  }
}

TEST(DecodeTest, ExtensionChains) {
  struct Row {
    const char* name;
    std::uint8_t offset;
    Bytes rest;  // from 18 on
    Result<std::vector<Extension>> expected;
  };
  const Row rows[] = {
      {"one without data", 18, {0, 1, 0, 0, 0}, std::vector<Extension>{{1, {}}}},
      {"two",
       18,
       {0, 1, 0, 0, 24, 'a', 0, 2, 0, 0, 0, 'b', 'c'},
       std::vector<Extension>{{1, {'a'}}, {2, {'b', 'c'}}}},
      {"private use is ignored when unknown", 18, {0x80, 1, 0, 0, 0}, std::vector<Extension>{{0x8001, {}}}},
      {"the last optional id", 18, {0x3F, 0xFF, 0, 0, 0}, std::vector<Extension>{{0x3FFF, {}}}},
      {"the first mandatory id", 18, {0x40, 0, 0, 0, 0}, Error::kOptionNotUnderstood},
      {"a known mandatory id", 18, {0x40, 1, 0, 0, 0}, std::vector<Extension>{{kExtensionProcessId, {}}}},
      {"an unknown mandatory id", 18, {0x40, 2, 0, 0, 0}, Error::kOptionNotUnderstood},
      {"the last mandatory id", 18, {0x7F, 0xFF, 0, 0, 0}, Error::kOptionNotUnderstood},
      {"a mandatory id behind others", 18, {0, 1, 0, 0, 23, 0x50, 0, 0, 0, 0}, Error::kOptionNotUnderstood},
      {"the experimental process id",
       18,
       {0x97, 0x99, 0, 0, 0},
       std::vector<Extension>{{kExtensionProcessIdExperimental, {}}}},
      {"bytes behind the body without an offset", 0, {0, 1, 0, 0, 0}, Error::kParseError},
      {"an offset into the header", 12, {0, 1, 0, 0, 0}, Error::kParseError},
      {"an offset into the body", 17, {0, 1, 0, 0, 0}, Error::kParseError},
      {"a gap before the first one", 19, {0, 0, 1, 0, 0, 0}, Error::kParseError},
      {"an offset at the end", 18, {}, Error::kParseError},
      {"an offset past the end", 200, {0, 1, 0, 0, 0}, Error::kParseError},
      {"a head that does not fit", 18, {0, 1, 0, 0}, Error::kParseError},
      {"a next one past the end", 18, {0, 1, 0, 0, 99}, Error::kParseError},
      {"a next one at the end", 18, {0, 1, 0, 0, 24, 'a'}, Error::kParseError},
      {"a next one that does not fit", 18, {0, 1, 0, 0, 23, 0, 2, 0, 0}, Error::kParseError},
      {"a next one inside the head", 18, {0, 1, 0, 0, 22, 0, 2, 0, 0, 0}, Error::kParseError},
      {"itself as the next one", 18, {0, 1, 0, 0, 18}, Error::kParseError},
      {"a circle of two", 18, {0, 1, 0, 0, 23, 0, 2, 0, 0, 18}, Error::kParseError},
      {"a next one before the first", 18, {0, 1, 0, 0, 1}, Error::kParseError},
      {"a next one beyond 16 bits", 18, {0, 1, 0xFF, 0xFF, 0xFF}, Error::kParseError},
  };
  for (const Row& row : rows) {
    const Result<Message> message = Decode(Acknowledgment(row.offset, row.rest));
    if (row.expected) {
      EXPECT_THAT(message, Holds(Reply(SrvAck{}, false, *row.expected))) << row.name;
    } else {
      EXPECT_THAT(message, Fails(row.expected.error())) << row.name;
    }
  }
}

// A chain of nothing but heads is walked once from end to end.
TEST(DecodeTest, LongChain) {
  constexpr std::size_t kLinks = 100'000;
  Bytes bytes = Acknowledgment(18, {});
  bytes.reserve(18 + 5 * kLinks);
  for (std::size_t link = 1; link <= kLinks; ++link) {
    const std::size_t next = link < kLinks ? 18 + 5 * link : 0;
    for (const std::size_t byte : {std::size_t{0}, std::size_t{1}, next >> 16, next >> 8, next}) {
      bytes.push_back(static_cast<std::uint8_t>(byte & 0xFF));
    }
  }
  for (std::size_t index = 0; index < 3; ++index) {
    bytes[2 + index] = static_cast<std::uint8_t>(bytes.size() >> (16 - 8 * index) & 0xFF);
  }
  const Result<Message> message = Decode(bytes);
  ASSERT_TRUE(message.ok());
  EXPECT_EQ(message->header.extensions.size(), kLinks);
}

TEST(DecodeTest, NothingIsNoMessage) {
  EXPECT_THAT(Decode({}), Fails(Error::kParseError));
}

}  // namespace
}  // namespace slp
