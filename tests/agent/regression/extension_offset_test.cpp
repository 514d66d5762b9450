// The offset of an extension is the sender's word: one that points outside the message, backwards or at
// itself must neither be followed nor end in a circle.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

constexpr std::size_t kHeaderOffset = 7;

void PutOffset(Bytes& bytes, std::size_t position, std::size_t offset) {
  bytes.at(position) = static_cast<std::uint8_t>(offset >> 16U);
  bytes.at(position + 1) = static_cast<std::uint8_t>(offset >> 8U);
  bytes.at(position + 2) = static_cast<std::uint8_t>(offset);
}

std::size_t OffsetAt(const Bytes& bytes, std::size_t position) {
  return std::size_t{bytes.at(position)} << 16U | std::size_t{bytes.at(position + 1)} << 8U |
         bytes.at(position + 2);
}

class ExtensionOffsetTest : public ::testing::Test {
 protected:
  ExtensionOffsetTest() {
    Message message = MakeMessage(MakeSrvReg("service:x://h", "service:x"));
    message.header.fresh = true;
    message.header.extensions = {{0x8001, {1, 2}}, {0x8002, {3}}};
    bytes_ = *Encode(message);
    first_ = OffsetAt(bytes_, kHeaderOffset);
    second_ = OffsetAt(bytes_, first_ + 2);
  }

  /// What is acknowledged to the registration, as a program of the own host sends it.
  Error Acknowledged(const Bytes& bytes) {
    const std::optional<Message> reply = daemon_.Send(bytes, kOwnHost);
    return reply ? std::get<SrvAck>(reply->body).error : Error::kInternalError;
  }

  DaemonLogic daemon_;
  Bytes bytes_;
  std::size_t first_ = 0;
  std::size_t second_ = 0;
};

TEST_F(ExtensionOffsetTest, AsItWasWrittenItIsTaken) {
  EXPECT_EQ(Acknowledged(bytes_), Error::kOk);
}

TEST_F(ExtensionOffsetTest, OutsideTheMessage) {
  for (const std::size_t offset :
       {bytes_.size(), bytes_.size() + 1, bytes_.size() - 1, std::size_t{0xFFFFFF}}) {
    Bytes first = bytes_;
    PutOffset(first, kHeaderOffset, offset);
    EXPECT_EQ(Acknowledged(first), Error::kParseError) << offset;
    Bytes second = bytes_;
    PutOffset(second, first_ + 2, offset);
    EXPECT_EQ(Acknowledged(second), Error::kParseError) << offset;
  }
  EXPECT_EQ(daemon_.registry.size(), 0U);
}

TEST_F(ExtensionOffsetTest, IntoTheHeaderOrTheBody) {
  for (std::size_t offset = 1; offset < first_; ++offset) {
    Bytes bytes = bytes_;
    PutOffset(bytes, kHeaderOffset, offset);
    EXPECT_NE(Acknowledged(bytes), Error::kOk) << offset;
  }
  EXPECT_EQ(daemon_.registry.size(), 0U);
}

TEST_F(ExtensionOffsetTest, InACircle) {
  Bytes itself = bytes_;
  PutOffset(itself, first_ + 2, first_);
  EXPECT_EQ(Acknowledged(itself), Error::kParseError);
  Bytes back = bytes_;
  PutOffset(back, second_ + 2, first_);
  EXPECT_EQ(Acknowledged(back), Error::kParseError);
  EXPECT_EQ(daemon_.registry.size(), 0U);
}

}  // namespace
}  // namespace slp
