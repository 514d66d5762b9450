// What cannot be written, and replies that must fit a datagram.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/wire/golden_messages.h"
#include "agent/wire/printing.h"
#include "wire/codec.h"

namespace slp {
namespace {

Message InEnglish(Body body) {
  Message message;
  message.header.xid = 77;
  message.body = std::move(body);
  return message;
}

TEST(EncodeTest, FieldsHaveTheirLargestValues) {
  const std::string longest(0xFFFF, 'x');
  const std::string too_long(0x10000, 'x');
  struct Row {
    const char* name;
    Message message;
    bool fits;
  };
  Message language = InEnglish(SrvAck{});
  language.header.language = too_long;
  Message longest_language = InEnglish(SrvAck{});
  longest_language.header.language = longest;
  using Blocks = std::vector<AuthenticationBlock>;
  const Row rows[] = {
      {"longest text", InEnglish(SrvRqst{"", longest, "", "", ""}), true},
      {"text too long", InEnglish(SrvRqst{"", too_long, "", "", ""}), false},
      {"longest URL", InEnglish(SrvRply{Error::kOk, {{1, longest, {}}}}), true},
      {"URL too long", InEnglish(SrvRply{Error::kOk, {{1, too_long, {}}}}), false},
      {"longest language tag", longest_language, true},
      {"language tag too long", language, false},
      {"longest naming authority", InEnglish(SrvTypeRqst{"", std::string(0xFFFE, 'x'), ""}), true},
      {"a naming authority whose length means all", InEnglish(SrvTypeRqst{"", longest, ""}), false},
      {"naming authority too long", InEnglish(SrvTypeRqst{"", too_long, ""}), false},
      {"most blocks", InEnglish(SaAdvert{"", "", "", Blocks(255)}), true},
      {"too many blocks", InEnglish(SaAdvert{"", "", "", Blocks(256)}), false},
      {"largest block", InEnglish(SaAdvert{"", "", "", {{2, Bytes(0xFFFF - 4)}}}), true},
      {"block too large", InEnglish(SaAdvert{"", "", "", {{2, Bytes(0xFFFF - 3)}}}), false},
      {"most entries", InEnglish(SrvRply{Error::kOk, std::vector<UrlEntry>(0xFFFF)}), true},
      {"too many entries", InEnglish(SrvRply{Error::kOk, std::vector<UrlEntry>(0x10000)}), false},
  };
  for (const Row& row : rows) {
    const Result<Bytes> bytes = Encode(row.message);
    if (row.fits) {
      ASSERT_TRUE(bytes.ok()) << row.name;
      const Result<Message> message = Decode(*bytes);
      EXPECT_TRUE(message.ok() && *message == row.message) << row.name;
    } else {
      EXPECT_EQ(bytes.error(), Error::kInternalError) << row.name;
    }
  }
}

TEST(EncodeTest, MessagesAreAtMostAsLongAs24BitsCanSay) {
  Message message = InEnglish(SrvAck{});
  constexpr std::size_t kOverhead = 18 + 5;
  message.header.extensions = {{1, Bytes(kMaximumMessageLength - kOverhead)}};
  const Result<Bytes> bytes = Encode(message);
  ASSERT_TRUE(bytes.ok());
  EXPECT_EQ(bytes->size(), kMaximumMessageLength);
  EXPECT_TRUE(Decode(*bytes).ok());

  message.header.extensions[0].payload.push_back(0);
  EXPECT_EQ(Encode(message).error(), Error::kInternalError);
  message.header.extensions.push_back({2, {}});
  EXPECT_EQ(Encode(message).error(), Error::kInternalError);
}

// Header and error are 18 bytes, the count two, an entry of these twelve.
TEST(EncodeWithinTest, KeepsTheFirstUrlEntriesThatFit) {
  SrvRply reply;
  for (const char* url : {"url-aa", "url-bb", "url-cc"}) {
    reply.urls.push_back({300, url, {}});
  }
  const Message whole = InEnglish(reply);
  ASSERT_EQ(Encode(whole)->size(), 56U);
  for (std::size_t limit = 0; limit < 60; ++limit) {
    SCOPED_TRACE(limit);
    const Result<Bytes> bytes = EncodeWithin(whole, limit);
    if (limit < 20) {
      EXPECT_EQ(bytes.error(), Error::kInternalError);
      continue;
    }
    ASSERT_TRUE(bytes.ok());
    EXPECT_LE(bytes->size(), limit);
    Message expected = whole;
    expected.header.overflow = limit < 56;
    std::get<SrvRply>(expected.body).urls.resize(std::min<std::size_t>((limit - 20) / 12, 3));
    EXPECT_THAT(Decode(*bytes), Holds(expected));
  }
}

TEST(EncodeWithinTest, AnEntryThatDoesNotFitEndsTheList) {
  SrvRply reply;
  for (const char* url : {"a", "bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb", "c"}) {
    reply.urls.push_back({300, url, {}});
  }
  Message expected = InEnglish(SrvRply{Error::kOk, {{300, "a", {}}}});
  expected.header.overflow = true;
  EXPECT_THAT(Decode(*EncodeWithin(InEnglish(reply), 50)), Holds(expected));
}

TEST(EncodeWithinTest, NoMoreEntriesThanCanBeCounted) {
  Message message = InEnglish(SrvRply{Error::kOk, std::vector<UrlEntry>(kMaximumUrlEntries + 1)});
  const Result<Bytes> bytes = EncodeWithin(message, kMaximumMessageLength);
  ASSERT_TRUE(bytes.ok());
  const Result<Message> decoded = Decode(*bytes);
  ASSERT_TRUE(decoded.ok());
  EXPECT_TRUE(decoded->header.overflow);
  EXPECT_EQ(std::get<SrvRply>(decoded->body).urls.size(), kMaximumUrlEntries);
}

TEST(EncodeWithinTest, NeverLongerThan24BitsCanSay) {
  const std::vector<UrlEntry> entries(300, UrlEntry{1, std::string(0xFFFF, 'u'), {}});
  const Result<Bytes> bytes =
      EncodeWithin(InEnglish(SrvRply{Error::kOk, entries}), static_cast<std::size_t>(-1));
  ASSERT_TRUE(bytes.ok());
  EXPECT_LE(bytes->size(), kMaximumMessageLength);
  const Result<Message> decoded = Decode(*bytes);
  ASSERT_TRUE(decoded.ok());
  EXPECT_TRUE(decoded->header.overflow);
  EXPECT_EQ(std::get<SrvRply>(decoded->body).urls.size(), 255U);
}

TEST(EncodeWithinTest, OtherRepliesKeepKindAndError) {
  const std::string text(100, 't');
  struct Row {
    Body whole;
    Body cut;
  };
  const Row rows[] = {
      {AttrRply{Error::kOk, text, {{2, {1}}}}, AttrRply{}},
      {AttrRply{Error::kInternalError, text, {}}, AttrRply{Error::kInternalError, "", {}}},
      {SrvTypeRply{Error::kScopeNotSupported, text}, SrvTypeRply{Error::kScopeNotSupported, ""}},
      {SaAdvert{text, text, text, {{2, {1}}}}, SaAdvert{}},
      {DaAdvert{Error::kDaBusyNow, 99, text, text, text, text, {{2, {1}}}},
       DaAdvert{Error::kDaBusyNow, 99, "", "", "", "", {}}},
  };
  for (const Row& row : rows) {
    Message whole = InEnglish(row.whole);
    whole.header.extensions = {{1, Bytes(100)}};
    Message cut = InEnglish(row.cut);
    cut.header.overflow = true;
    const std::size_t size = Encode(whole)->size();
    EXPECT_THAT(EncodeWithin(whole, size), Holds(*Encode(whole)));
    const Result<Bytes> bytes = EncodeWithin(whole, size - 1);
    ASSERT_TRUE(bytes.ok());
    EXPECT_THAT(Decode(*bytes), Holds(cut));
    EXPECT_THAT(EncodeWithin(whole, bytes->size()), Holds(*bytes));
    EXPECT_THAT(EncodeWithin(whole, bytes->size() - 1), Fails(Error::kInternalError));
    EXPECT_THAT(EncodeBare(whole, size), Holds(*bytes));
    EXPECT_THAT(EncodeBare(whole, bytes->size()), Holds(*bytes));
    EXPECT_THAT(EncodeBare(whole, bytes->size() - 1), Fails(Error::kInternalError));
  }
}

TEST(EncodeBareTest, LeavesNothingButErrorAndOverflow) {
  const Message whole = InEnglish(SrvRply{Error::kOk, {{60, "service:x://h", {}}}});
  Message bare = InEnglish(SrvRply{});
  bare.header.overflow = true;
  EXPECT_THAT(Decode(*EncodeBare(whole, 1400)), Holds(bare));
  EXPECT_THAT(EncodeBare(InEnglish(SrvRqst{}), 1400), Fails(Error::kInternalError));
}

TEST(EncodeWithinTest, ALongExtensionGivesWayToTheReply) {
  Message message = InEnglish(SrvAck{Error::kDaBusyNow});
  message.header.extensions = {{1, Bytes(100)}};
  Message cut = InEnglish(SrvAck{Error::kDaBusyNow});
  cut.header.overflow = true;
  EXPECT_THAT(Decode(*EncodeWithin(message, 50)), Holds(cut));
}

TEST(EncodeWithinTest, RequestsAreNeverCut) {
  for (const Body& body :
       {Body(SrvRqst{}), Body(SrvReg{}), Body(SrvDereg{}), Body(AttrRqst{}), Body(SrvTypeRqst{})}) {
    const Message message = InEnglish(body);
    const std::size_t size = Encode(message)->size();
    EXPECT_TRUE(EncodeWithin(message, size).ok());
    EXPECT_THAT(EncodeWithin(message, size - 1), Fails(Error::kInternalError));
  }
}

// A reply to a stranger must not be larger than the request was (so that nobody uses this agent to flood
// another).
TEST(EncodeWithinTest, ACutReplyFitsIntoTheShortestRequestForIt) {
  struct Row {
    Body request;
    Body reply;
  };
  const std::string text(500, 't');
  const Row rows[] = {
      {SrvRqst{"", "x", "", "", ""}, SrvRply{Error::kOk, {{1, text, {}}}}},
      {SrvRqst{"", "service:directory-agent", "", "", ""},
       DaAdvert{Error::kOk, 5, text, text, text, text, {}}},
      {SrvRqst{"", "service:service-agent", "", "", ""}, SaAdvert{text, text, text, {}}},
      {AttrRqst{"", "x", "", "", ""}, AttrRply{Error::kOk, text, {}}},
      {SrvTypeRqst{}, SrvTypeRply{Error::kOk, text}},
  };
  for (const Row& row : rows) {
    const std::size_t limit = Encode(InEnglish(row.request))->size();
    EXPECT_TRUE(EncodeWithin(InEnglish(row.reply), limit).ok()) << row.request.index();
  }
}

}  // namespace
}  // namespace slp
