#include "slpd/directory/advertiser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace slp {
namespace {

using testing::ElementsAre;

// When advertisements are sent up to `end`, if each is sent when it is due.
std::vector<Instant> Sent(Advertiser& advertiser, Instant end) {
  std::vector<Instant> sent;
  while (advertiser.NextDue() && *advertiser.NextDue() <= end) {
    sent.push_back(*advertiser.NextDue());
    EXPECT_TRUE(advertiser.TakeDue(sent.back()));
    EXPECT_FALSE(advertiser.TakeDue(sent.back()));
  }
  return sent;
}

TEST(AdvertiserTest, NothingIsDueOutsideTheRole) {
  Advertiser advertiser;
  EXPECT_FALSE(advertiser.running());
  EXPECT_EQ(advertiser.NextDue(), std::nullopt);
  EXPECT_FALSE(advertiser.TakeDue(Seconds(1000)));
  advertiser.Start(Seconds(60), Seconds(1));
  EXPECT_TRUE(advertiser.running());
  advertiser.Stop();
  EXPECT_FALSE(advertiser.running());
  EXPECT_FALSE(advertiser.TakeDue(Seconds(1000)));
}

TEST(AdvertiserTest, AtOnceTwiceMoreAndThenByTheHeartBeat) {
  Advertiser advertiser;
  advertiser.Start(Seconds(10800), Seconds(5));
  EXPECT_THAT(Sent(advertiser, Seconds(30000)),
              ElementsAre(Seconds(5), Seconds(7), Seconds(11), Seconds(10811), Seconds(21611)));
}

TEST(AdvertiserTest, AShortHeartBeatIsKept) {
  Advertiser advertiser;
  advertiser.Start(Seconds(1), Seconds(5));
  EXPECT_THAT(Sent(advertiser, Seconds(8)), ElementsAre(Seconds(5), Seconds(6), Seconds(7), Seconds(8)));
}

TEST(AdvertiserTest, ALateTickSendsOnce) {
  Advertiser advertiser;
  advertiser.Start(Seconds(60), Seconds(0));
  EXPECT_TRUE(advertiser.TakeDue(Seconds(1000)));
  EXPECT_EQ(advertiser.NextDue(), Seconds(1002));
}

}  // namespace
}  // namespace slp
