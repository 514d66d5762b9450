#include "slpd/directory/refresh_limit.h"

#include <gtest/gtest.h>

#include "slpd/agent_settings.h"

namespace slp {
namespace {

TEST(MinimumRefreshInterval, IsASinglePositiveNumber) {
  const std::pair<const char*, Seconds> cases[] = {
      {"", Seconds(0)},
      {"(room=7)", Seconds(0)},
      {"(min-refresh-interval=60)", Seconds(60)},
      {"(room=7),(Min-Refresh-Interval=1)", Seconds(1)},
      {"(min-refresh-interval=0)", Seconds(0)},
      {"(min-refresh-interval=-1)", Seconds(0)},
      {"(min-refresh-interval=60,70)", Seconds(0)},
      {"(min-refresh-interval=soon)", Seconds(0)},
      {"min-refresh-interval", Seconds(0)},
      {"(min-refresh-interval=60", Seconds(0)},
      {"(min-refresh-interval=5400)", Seconds(5400)},
      {"(min-refresh-interval=5401)", Seconds(5400)},
      {"(min-refresh-interval=2147483647)", Seconds(5400)},
  };
  for (const auto& [attributes, interval] : cases) {
    EXPECT_EQ(MinimumRefreshInterval(attributes), interval) << attributes;
  }
}

TEST(MinimumRefreshInterval, OfTheOwnAgentComesFromItsAttributes) {
  Properties properties;
  EXPECT_EQ(AgentSettings::From(properties).min_refresh_interval, Seconds(0));
  properties.Set("net.slp.DAAttributes", "(min-refresh-interval=60)");
  EXPECT_EQ(AgentSettings::From(properties).min_refresh_interval, Seconds(60));
}

const RefreshLimit::Key kOne("service:x://1", "en");
const RefreshLimit::Key kGerman("service:x://1", "de");

TEST(RefreshLimit, HoldsNothingBackWithoutAnInterval) {
  RefreshLimit limit;
  limit.Told(kOne, Seconds(100));
  EXPECT_FALSE(limit.Postpone(kOne, Seconds(100)));
  EXPECT_EQ(limit.NextDue(), std::nullopt);
}

TEST(RefreshLimit, PostponesEachServiceOnceUntilItsTime) {
  RefreshLimit limit;
  limit.SetInterval(Seconds(60));
  EXPECT_FALSE(limit.Postpone(kOne, Seconds(100)));
  limit.Told(kOne, Seconds(100));
  EXPECT_TRUE(limit.Postpone(kOne, Seconds(110)));
  EXPECT_TRUE(limit.Postpone(kOne, Seconds(120)));
  EXPECT_FALSE(limit.Postpone(kGerman, Seconds(120)));
  EXPECT_EQ(limit.NextDue(), Instant(Seconds(160)));
  EXPECT_EQ(limit.TakeDue(Seconds(160) - Instant(1)), std::nullopt);
  EXPECT_EQ(limit.TakeDue(Seconds(160)), kOne);
  EXPECT_EQ(limit.TakeDue(Seconds(160)), std::nullopt);
  EXPECT_FALSE(limit.Postpone(kOne, Seconds(160)));
}

TEST(RefreshLimit, ForgetsWhatIsGone) {
  RefreshLimit limit;
  limit.SetInterval(Seconds(60));
  limit.Told(kOne, Seconds(100));
  EXPECT_TRUE(limit.Postpone(kOne, Seconds(110)));
  limit.Forget(kOne);
  EXPECT_EQ(limit.NextDue(), std::nullopt);
  EXPECT_FALSE(limit.Postpone(kOne, Seconds(110)));
}

}  // namespace
}  // namespace slp
