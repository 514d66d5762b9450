// The property functions at the border of the C API; the store behind them has tests of its own.
#include <gtest/gtest.h>

#include "slp.h"

namespace {

TEST(PropertyCalls, NullAndUnknown) {
  EXPECT_EQ(SLPGetProperty(nullptr), nullptr);
  EXPECT_EQ(SLPGetProperty("net.slp.noSuchProperty"), nullptr);
  SLPSetProperty(nullptr, "x");
  SLPSetProperty("", "x");
  EXPECT_STREQ(SLPGetProperty("net.slp.port"), "427");
}

TEST(PropertyCalls, SettingHoldsAndNullOrEmptyTakesItBack) {
  SLPSetProperty("net.slp.port", "4270");
  EXPECT_STREQ(SLPGetProperty("net.slp.port"), "4270");
  SLPSetProperty("net.slp.port", nullptr);
  EXPECT_STREQ(SLPGetProperty("net.slp.port"), "427");
  SLPSetProperty("net.slp.port", "4271");
  SLPSetProperty("net.slp.port", "");
  EXPECT_STREQ(SLPGetProperty("net.slp.port"), "427");
}

TEST(PropertyCalls, TheApplicationFileIsNamedBeforeTheFirstUse) {
  EXPECT_EQ(SLPSetAppPropertyFile(nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPSetAppPropertyFile(""), SLP_PARAMETER_BAD);
  EXPECT_STREQ(SLPGetProperty("net.slp.port"), "427");
  EXPECT_EQ(SLPSetAppPropertyFile("/no/such/file"), SLP_PARAMETER_BAD);
}

}  // namespace
