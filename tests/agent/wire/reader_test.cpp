#include "wire/reader.h"

#include <gtest/gtest.h>

#include "agent/wire/golden_messages.h"

namespace slp {
namespace {

TEST(ReaderTest, ReadsBigEndianNumbersAndTexts) {
  const Bytes bytes = ToBytes(
      "\x01\x02\x03\x04\x05\x06\x80\x07\x08\x09"
      "abcde");
  Reader reader(bytes);
  EXPECT_EQ(reader.U8(), 0x01);
  EXPECT_EQ(reader.U16(), 0x0203);
  EXPECT_EQ(reader.U24(), 0x040506U);
  EXPECT_EQ(reader.U32(), 0x80070809U);
  EXPECT_EQ(reader.remaining(), 5U);
  EXPECT_EQ(reader.Text(2), "ab");
  EXPECT_EQ(reader.Block(2), ToBytes("cd"));
  EXPECT_EQ(reader.Take(1).size(), 1U);
  EXPECT_EQ(reader.remaining(), 0U);
  EXPECT_EQ(reader.Text(0), "");
  EXPECT_FALSE(reader.failed());
}

TEST(ReaderTest, AStepPastTheEndFailsItAndAllLaterOnes) {
  const Bytes bytes = {1, 2, 3};
  Reader reader(bytes);
  EXPECT_EQ(reader.U32(), 0U);
  EXPECT_TRUE(reader.failed());
  EXPECT_EQ(reader.U8(), 0U);
  EXPECT_EQ(reader.Text(1), "");
  EXPECT_EQ(reader.Block(1), Bytes());
  EXPECT_TRUE(reader.Take(0).empty());
}

TEST(ReaderTest, EveryKindOfStepStopsAtTheEnd) {
  const Bytes none;
  EXPECT_EQ(Reader(none).U8(), 0U);
  EXPECT_EQ(Reader(none).U16(), 0U);
  EXPECT_EQ(Reader(none).U24(), 0U);
  EXPECT_EQ(Reader(none).Text(1), "");
  Reader reader(none);
  reader.Take(static_cast<std::size_t>(-1));
  EXPECT_TRUE(reader.failed());
}

TEST(ReaderTest, FailsWhenTold) {
  const Bytes bytes = {1};
  Reader reader(bytes);
  reader.Fail();
  EXPECT_TRUE(reader.failed());
  EXPECT_EQ(reader.U8(), 0U);
}

}  // namespace
}  // namespace slp
