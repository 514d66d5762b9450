#include "text/refresh_interval.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

TEST(AdvertisedRefreshInterval, IsASinglePositiveNumber) {
  const std::pair<const char*, std::chrono::seconds> cases[] = {
      {"", std::chrono::seconds(0)},
      {"(room=7),(Min-Refresh-Interval=1)", std::chrono::seconds(1)},
      {"(min-refresh-interval=-1)", std::chrono::seconds(0)},
      {"(min-refresh-interval=60,70)", std::chrono::seconds(0)},
      {"(min-refresh-interval=soon)", std::chrono::seconds(0)},
      {"(min-refresh-interval=60", std::chrono::seconds(0)},
      {"(min-refresh-interval=2147483647)", std::chrono::seconds(2147483647)},
  };
  for (const auto& [attributes, interval] : cases) {
    EXPECT_EQ(AdvertisedRefreshInterval(attributes), interval) << attributes;
  }
}

}  // namespace
}  // namespace slp
