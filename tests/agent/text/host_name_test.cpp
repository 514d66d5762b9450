#include "text/host_name.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

TEST(IsHostName, TellsNamesFromAddressesAndOtherTexts) {
  for (const char* name : {"a", "localhost", "agent.example.com", "7.example", "x-1"}) {
    EXPECT_TRUE(IsHostName(name)) << name;
  }
  for (const char* other : {"", ".", "10.0.0.5", "10.0.0", "agent.7", ".example", "a b", "a_b", "::1",
                            "[::1]", "fe80::1%eth0", "agent/1", "\xC3\xA4"}) {
    EXPECT_FALSE(IsHostName(other)) << other;
  }
}

}  // namespace
}  // namespace slp
