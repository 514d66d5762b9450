#include "slpd/server/default_paths.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace slp {
namespace {

TEST(DefaultPaths, ThePidFileLiesWhereTheEnvironmentSays) {
  ::setenv("KELSD_SLPD_PIDFILE", "/somewhere/pid", 1);
  EXPECT_EQ(DefaultPidFile(), "/somewhere/pid");
}

TEST(DefaultPaths, WithoutThatItLiesInTheFolderOfThoseWhoRunIt) {
  ::unsetenv("KELSD_SLPD_PIDFILE");
  ::setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
  EXPECT_EQ(DefaultPidFile(), ::geteuid() == 0 ? "/run/slpd.pid" : "/run/user/7/slpd.pid");
}

TEST(DefaultPaths, RegistrationFile) {
  EXPECT_EQ(DefaultRegistrationFile(), "/etc/slp.reg");
}

}  // namespace
}  // namespace slp
