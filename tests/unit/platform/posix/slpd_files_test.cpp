#include "platform/posix/slpd_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "support/fake_platform/environment.h"
#include "support/without_privileges.h"

namespace kelsd::platform {
namespace {

class SlpdFiles : public testing::Test {
 protected:
  SlpdFiles() { Clear(); }
  ~SlpdFiles() override { Clear(); }
  SlpdFiles(const SlpdFiles&) = delete;
  SlpdFiles& operator=(const SlpdFiles&) = delete;

  static void Clear() {
    for (const char* name : {"KELSD_SLPD", "KELSD_SLPD_PIDFILE", "XDG_RUNTIME_DIR"}) {
      ClearEnvironment(name);
    }
  }
};

TEST_F(SlpdFiles, ThePidFileIsTheOneThatTheEnvironmentNames) {
  SetEnvironment("XDG_RUNTIME_DIR", "/run/user/1000");
  SetEnvironment("KELSD_SLPD_PIDFILE", "/tmp/own.pid");
  EXPECT_EQ(SlpdPidFile(), "/tmp/own.pid");
  const support::WithoutPrivileges user;
  EXPECT_EQ(SlpdPidFile(), "/tmp/own.pid");
}

TEST_F(SlpdFiles, TheAdministratorsPidFileIsTheSystems) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "needs the administrator's rights";
  }
  SetEnvironment("XDG_RUNTIME_DIR", "/run/user/1000");
  EXPECT_EQ(SlpdPidFile(), "/run/slpd.pid");
  SetEnvironment("KELSD_SLPD_PIDFILE", "");
  EXPECT_EQ(SlpdPidFile(), "/run/slpd.pid") << "an empty name is none";
}

TEST_F(SlpdFiles, AUsersPidFileIsInTheRuntimeFolder) {
  const support::WithoutPrivileges user;
  EXPECT_EQ(SlpdPidFile(), "") << "without such a folder there is no place";
  SetEnvironment("XDG_RUNTIME_DIR", "/run/user/1000");
  EXPECT_EQ(SlpdPidFile(), "/run/user/1000/slpd.pid");
}

TEST_F(SlpdFiles, TheLogIsTheSystemsOrBesideThePidFile) {
  struct Row {
    const char* pid_file;
    const char* log;
  };
  for (const Row& row : {
           Row{"/run/slpd.pid", "/var/log/slpd.log"},
           Row{"/run/user/1000/slpd.pid", "/run/user/1000/slpd.log"},
           Row{"/tmp/own", "/tmp/own.log"},
           Row{"/tmp/own.pid.old", "/tmp/own.pid.old.log"},
           Row{"/srv/a.pid/own", "/srv/a.pid/own.log"},
           Row{"slpd.pid", "slpd.log"},
       }) {
    EXPECT_EQ(SlpdLogFile(row.pid_file), row.log) << row.pid_file;
  }
}

TEST_F(SlpdFiles, TheProgramIsTheOneThatTheEnvironmentNames) {
  SetEnvironment("KELSD_SLPD", "/opt/slp/slpd");
  EXPECT_EQ(SlpdProgram(), "/opt/slp/slpd");
}

}  // namespace
}  // namespace kelsd::platform
