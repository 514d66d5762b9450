#include "slpd/server/message_framer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "agent/slpd_server/bytes.h"

namespace slp {
namespace {

using State = MessageFramer::State;

constexpr std::size_t kLimit = 4096;

struct Step {
  State state;
  Bytes message;
  bool operator==(const Step&) const = default;
};

// Everything that the framer gives out for what it has, up to the state that stops it.
std::vector<Step> Drain(MessageFramer& framer) {
  std::vector<Step> steps;
  for (;;) {
    std::span<const std::uint8_t> message;
    const State state = framer.Next(message);
    steps.push_back({state, Bytes(message.begin(), message.end())});
    if (state != State::kMessage) {
      return steps;
    }
  }
}

TEST(MessageFramer, GivesOutMessagesThatCameInOneChunk) {
  const Bytes first = BytesOf(1, SrvTypeRqst{});
  const Bytes second = BytesOf(2, SrvAck{});
  MessageFramer framer(kLimit);
  framer.Append(Joined(first, second));
  EXPECT_EQ(
      Drain(framer),
      (std::vector<Step>{{State::kMessage, first}, {State::kMessage, second}, {State::kIncomplete, {}}}));
  EXPECT_EQ(framer.pending(), 0U);
}

TEST(MessageFramer, WaitsForTheLastByte) {
  const Bytes message = BytesOf(1, SrvTypeRqst{{}, "iana", "DEFAULT"});
  MessageFramer framer(kLimit);
  for (std::size_t i = 0; i + 1 < message.size(); ++i) {
    framer.Append(std::span(message).subspan(i, 1));
    EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kIncomplete, {}}})) << "after byte " << i;
  }
  framer.Append(std::span(message).last(1));
  EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kMessage, message}, {State::kIncomplete, {}}}));
}

TEST(MessageFramer, KeepsTheBeginningOfTheNextMessage) {
  const Bytes first = BytesOf(1, SrvAck{});
  const Bytes second = BytesOf(2, SrvTypeRqst{});
  const Bytes both = Joined(first, second);
  MessageFramer framer(kLimit);
  framer.Append(std::span(both).first(first.size() + 5));
  EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kMessage, first}, {State::kIncomplete, {}}}));
  EXPECT_EQ(framer.pending(), 5U);
  framer.Append(std::span(both).subspan(first.size() + 5));
  EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kMessage, second}, {State::kIncomplete, {}}}));
}

TEST(MessageFramer, TakesAMessageAtTheLimitAndRefusesOneAboveByItsHeaderAlone) {
  MessageFramer at_limit(kLimit);
  Bytes message = HeaderClaiming(kLimit);
  message.resize(kLimit);
  at_limit.Append(message);
  EXPECT_EQ(Drain(at_limit), (std::vector<Step>{{State::kMessage, message}, {State::kIncomplete, {}}}));

  MessageFramer above(kLimit);
  above.Append(HeaderClaiming(kLimit + 1));
  EXPECT_EQ(Drain(above), (std::vector<Step>{{State::kTooLong, {}}}));
}

TEST(MessageFramer, HoldsWhatCameAndNotWhatTheHeaderClaims) {
  MessageFramer framer(kMaximumMessageLength);
  framer.Append(HeaderClaiming(kMaximumMessageLength));
  EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kIncomplete, {}}}));
  EXPECT_LT(framer.held(), 1024U);
}

TEST(MessageFramer, WhatIsNoMessageIsGivenOutOnceAsItIs) {
  const Bytes texts[] = {
      {'G', 'E', 'T', ' ', '/', ' ', 'H', 'T', 'T', 'P', '/', '1', '.', '0'},
      {1, 1, 0, 20, 0, 0, 'e', 'n', 0, 3, 0, 7},  // version 1
      HeaderClaiming(13),                         // shorter than a header
      HeaderClaiming(0),
  };
  for (const Bytes& text : texts) {
    MessageFramer framer(kLimit);
    framer.Append(text);
    EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kLast, text}}));
    EXPECT_EQ(Drain(framer), (std::vector<Step>{{State::kIncomplete, {}}}));
  }
}

TEST(MessageFramer, ReleaseGivesBackTheMemoryOfALongMessageOnly) {
  MessageFramer framer(kMaximumMessageLength);
  Bytes message = HeaderClaiming(100'000);
  message.resize(100'000);
  framer.Append(message);
  EXPECT_GE(framer.held(), 100'000U);
  framer.Release();
  EXPECT_EQ(framer.pending(), 100'000U);
  Drain(framer);
  framer.Release();
  EXPECT_LT(framer.held(), 1024U);
}

}  // namespace
}  // namespace slp
