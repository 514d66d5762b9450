// Lengths in a message are the sender's word: those that disagree with the datagram, or with each other, are
// never believed.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

std::vector<Message> Messages() {
  return {MakeMessage(MakeSrvRqst("service:x", "(a=1)")), MakeMessage(MakeAttrRqst("service:x://h", "a")),
          MakeMessage(SrvTypeRqst{"", "", "DEFAULT"}),
          MakeMessage(MakeSrvReg("service:y://h", "service:y", "(a=1)")),
          MakeMessage(SrvDereg{"DEFAULT", {0, "service:x://h", {}}, ""})};
}

class LengthsTest : public ::testing::Test {
 protected:
  LengthsTest() { daemon_.Register(MakeSrvReg("service:x://h", "service:x", "(a=1)")); }

  /// Whether the answer is an error or none; sanitizers watch the reading.
  bool IsRefused(const Bytes& bytes) {
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    EXPECT_FALSE(Decode(exact));
    const std::optional<Bytes> reply = daemon_.handler.Handle(exact, kOwnHost, daemon_.now);
    return !reply || (*reply)[14] != 0 || (*reply)[15] != 0 || (*reply)[16] != 0 || (*reply)[17] != 0;
  }

  DaemonLogic daemon_;
};

TEST_F(LengthsTest, AMessageThatIsShorterOrLongerThanItSays) {
  for (const Message& message : Messages()) {
    const Bytes whole = *Encode(message);
    for (const int difference : {-1, 1, 100, 65'535 - static_cast<int>(whole.size()), 0xFFFFFF - 100}) {
      Bytes bytes = whole;
      const auto length = static_cast<std::uint32_t>(static_cast<int>(whole.size()) + difference);
      bytes[2] = static_cast<std::uint8_t>(length >> 16U);
      bytes[3] = static_cast<std::uint8_t>(length >> 8U);
      bytes[4] = static_cast<std::uint8_t>(length);
      EXPECT_TRUE(IsRefused(bytes)) << difference;
    }
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_TRUE(IsRefused(longer));
  }
}

TEST_F(LengthsTest, AFieldThatReachesBeyondTheEnd) {
  for (const Message& message : Messages()) {
    const Bytes whole = *Encode(message);
    // The lengths of the language tag and of the body's first text, which a registration has behind a
    // lifetime.
    const std::size_t first = message.function() == FunctionId::kSrvReg ? 19 : 16;
    for (const std::size_t position : {std::size_t{12}, first}) {
      Bytes bytes = whole;
      bytes[position] = 0xFF;
      bytes[position + 1] = 0xFF;
      EXPECT_TRUE(IsRefused(bytes)) << position;
    }
  }
}

TEST_F(LengthsTest, MoreAuthenticationBlocksThanThereAre) {
  Bytes bytes = *Encode(MakeMessage(MakeSrvReg("service:y://h", "service:y")));
  bytes.back() = 255;
  EXPECT_TRUE(IsRefused(bytes));
  EXPECT_EQ(daemon_.registry.size(), 1U);
}

TEST_F(LengthsTest, AReplyThatCountsMoreUrlsThanItHas) {
  Bytes bytes = *Encode(MakeMessage(SrvRply{Error::kOk, {{60, "service:x://h", {}}}}));
  bytes[18] = 0xFF;
  bytes[19] = 0xFF;
  EXPECT_EQ(Decode(bytes).error(), Error::kParseError);
}

}  // namespace
}  // namespace slp
