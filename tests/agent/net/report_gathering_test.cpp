#include "net/report_gathering.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

using std::chrono::milliseconds;

ReportGathering::Moment At(int time) {
  return ReportGathering::Moment(milliseconds(time));
}

TEST(ReportGatheringTest, ActsWhenTheReportsPause) {
  ReportGathering gathering;
  EXPECT_EQ(gathering.OnReport(At(5000)), At(5300));
  EXPECT_EQ(gathering.OnReport(At(5100)), At(5400));
  gathering.OnActed();
  EXPECT_EQ(gathering.OnReport(At(5500)), At(5800));
}

TEST(ReportGatheringTest, ActsSoonWhenTheyNeverPause) {
  ReportGathering gathering;
  for (int time = 5000; time <= 5300; time += 100) {
    EXPECT_EQ(gathering.OnReport(At(time)), At(time + 300));
  }
  EXPECT_EQ(gathering.OnReport(At(5400)), At(5600));
  EXPECT_EQ(gathering.OnReport(At(5500)), At(5600));
  gathering.OnActed();
  EXPECT_EQ(gathering.OnReport(At(5601)), At(5901));
}

}  // namespace
}  // namespace slp
