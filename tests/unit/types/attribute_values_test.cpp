#include "types/attribute_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/grouping_locale.h"

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(AttributeValuesTest, WritesPortsInDecimal) {
  const test::GroupingLocale locale;
  EXPECT_EQ(PortToText(0), "0");
  EXPECT_EQ(PortToText(8080), "8080");
  EXPECT_EQ(PortToText(65535), "65535");
}

TEST(AttributeValuesTest, ReadsPorts) {
  EXPECT_EQ(TextToPort("0"), 0);
  EXPECT_EQ(TextToPort("8080"), 8080);
  EXPECT_EQ(TextToPort("  80"), 80);
  EXPECT_EQ(TextToPort("65535"), 65535);
}

TEST(AttributeValuesTest, ReadsAnythingElseAsPortZero) {
  for (const char* text : {"", " ", "80x", "70000", "65536", "-1", "80 ", "port"}) {
    EXPECT_EQ(TextToPort(text), 0) << text;
  }
}

TEST(AttributeValuesTest, WritesAddressesCleanedAndSorted) {
  EXPECT_EQ(AddressesToText({" 10.0.0.2", "fe80::1", "10.0.0.1"}), "10.0.0.1,10.0.0.2,FE80::1");
  EXPECT_EQ(AddressesToText({"10.0.0.2", "", "10.0.0.2", " "}), "10.0.0.2");
  EXPECT_EQ(AddressesToText({}), "");
}

TEST(AttributeValuesTest, ReadsAddressesFromAnyForm) {
  EXPECT_THAT(TextToAddresses(" fe80::1 ,,10.0.0.2, 10.0.0.1"),
              ElementsAre("10.0.0.1", "10.0.0.2", "FE80::1"));
  EXPECT_THAT(TextToAddresses(""), IsEmpty());
  EXPECT_THAT(TextToAddresses(" , "), IsEmpty());
}

}  // namespace
}  // namespace kelsd
