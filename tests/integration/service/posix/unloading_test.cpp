// An application unloads the part that uses the library while the library's timer runs: the library stays,
// and goes on renewing. This program doesn't link the library, which would keep it loaded.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/free_port.h"
#include "support/host_daemon/host_daemon.h"
#include "support/wait_until.h"

namespace kelsd::integration {
namespace {

using support::WaitUntil;

bool Call(void* part, const char* name) {
  auto* const function = reinterpret_cast<bool (*)()>(dlsym(part, name));
  return function != nullptr && function();
}

TEST(Unloading, LeavesTheLibraryWithARunningTimer) {
  const support::HostDaemon daemon;
  std::ofstream(daemon.File("slp.conf"))
      << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << slp::support::FreePort() << "\n";
  void* part = dlopen(KELSD_UNLOADED_PART, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(part, nullptr) << dlerror();
  ASSERT_TRUE(Call(part, "Announce"));
  ASSERT_EQ(dlclose(part), 0);
  EXPECT_EQ(dlopen(KELSD_UNLOADED_PART, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the part itself is gone";

  const int starts = daemon.Starts();
  daemon.Kill();
  EXPECT_TRUE(WaitUntil([&] { return daemon.Starts() > starts; }));

  part = dlopen(KELSD_UNLOADED_PART, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(part, nullptr) << dlerror();
  EXPECT_TRUE(Call(part, "Withdraw"));
  EXPECT_EQ(dlclose(part), 0);
}

}  // namespace
}  // namespace kelsd::integration
