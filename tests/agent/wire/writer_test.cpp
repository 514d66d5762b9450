#include "wire/writer.h"

#include <gtest/gtest.h>

#include "agent/wire/golden_messages.h"

namespace slp {
namespace {

TEST(WriterTest, WritesBigEndianNumbersAndTexts) {
  Writer writer;
  writer.U8(0xFF);
  writer.U16(0x0203);
  writer.U24(0x040506);
  writer.U32(0xFFFEFDFC);
  writer.Text("ab");
  writer.Block(Bytes{0, 1});
  EXPECT_FALSE(writer.failed());
  EXPECT_EQ(writer.size(), 14U);
  writer.PatchU24(1, 0xA1B2C3);
  EXPECT_FALSE(writer.failed());
  EXPECT_EQ(writer.Release(), ToBytes("\xFF\xA1\xB2\xC3\x05\x06\xFF\xFE\xFD\xFC"
                                      "ab"
                                      "\x00\x01"));
}

TEST(WriterTest, ANumberTooLargeForItsFieldFailsIt) {
  for (const auto& write :
       {+[](Writer& writer) { writer.U8(0x100); }, +[](Writer& writer) { writer.U16(0x10000); },
        +[](Writer& writer) { writer.U24(0x1000000); },
        +[](Writer& writer) { writer.PatchU24(0, 0x1000000); }, +[](Writer& writer) { writer.Fail(); }}) {
    Writer writer;
    writer.U24(0xFFFFFF);
    EXPECT_FALSE(writer.failed());
    write(writer);
    EXPECT_TRUE(writer.failed());
    writer.U8(1);
    EXPECT_TRUE(writer.failed());
  }
}

}  // namespace
}  // namespace slp
