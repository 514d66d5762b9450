// Here slpd is a service, and nothing about the pid files of other systems.
#include "slpd_hints.h"

#include <gtest/gtest.h>

#include "hints.h"

namespace kelsd_tool {
namespace {

using kelsd::SResult;

TEST(SlpdHints, AreThoseOfTheSystem) {
  EXPECT_EQ(HintFor(SResult::ERR_SLPD_OPEN),
            "Check that slpd is installed as a service (slpd install) and that this user may control it.");
  EXPECT_EQ(HintFor(SResult::ERR_SLPD_START),
            "Check that slpd is installed as a service (slpd install) and that its port is free, and look "
            "into its log and the event log.");
}

}  // namespace
}  // namespace kelsd_tool
