// Here slpd is an own process, found by its pid file.
#include "slpd_hints.h"

#include <gtest/gtest.h>

#include "hints.h"

namespace kelsd_tool {
namespace {

using kelsd::SResult;

TEST(SlpdHints, AreThoseOfTheSystem) {
  EXPECT_EQ(HintFor(SResult::ERR_SLPD_OPEN),
            "Check that this user may read the pid file of slpd (KELSD_SLPD_PIDFILE names it) and send it "
            "signals.");
  EXPECT_EQ(HintFor(SResult::ERR_SLPD_START),
            "Check that slpd is installed (KELSD_SLPD names it elsewhere), that its port is free and, below "
            "1024, permitted to this user, and look into its log.");
}

}  // namespace
}  // namespace kelsd_tool
