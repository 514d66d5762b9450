// What the tests of the service agent share: an initialised core on the scripted provider, and an agent on a
// fake platform with a configuration file in a folder of its own.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "service/service_impl.h"
#include "support/core_fixture.h"
#include "support/fake_platform/environment.h"
#include "support/fake_platform/fake_clock.h"
#include "support/fake_platform/fake_folders.h"
#include "support/fake_platform/fake_service_manager.h"
#include "support/fake_platform/fake_timers.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd {

inline const std::string kUrl = "service:x://10.0.0.1:80";
inline const std::string kAgentName = "kelsd::CKelSLPServiceImpl::";

/// The daemon runs, the file exists and is the one that the SLP library uses.
class ServiceFixture : public CoreFixture {
 protected:
  ServiceFixture() {
    UseConfigFile(folder.Write("slp.conf", ""));
    EXPECT_TRUE(CKelSLPImpl::Initialize().IsOk());
    scripted_slp::ForgetCalls();
    services.SetStartTime(FakeClock::kStart - 100);
  }

  ~ServiceFixture() override {
    EXPECT_EQ(services.OpenHandles(), 0);
    EXPECT_EQ(services.Violations(), std::vector<std::string>());
    ClearEnvironment("OpenSLPConfig");
  }

  ServiceFixture(const ServiceFixture&) = delete;
  ServiceFixture& operator=(const ServiceFixture&) = delete;

  /// The environment names this file, and the SLP library has taken it over.
  static void UseConfigFile(const std::string& name) {
    SetEnvironment("OpenSLPConfig", name);
    scripted_slp::SetFileProperty("net.slp.EnvConfigFile", name);
  }

  SResult Register(const std::string& url = kUrl, unsigned short lifetime = 60,
                   const std::vector<std::string>& scopes = {}) {
    return agent.RegisterService(url, lifetime, {}, scopes);
  }

  /// Registers, and forgets what that took.
  void Registered(const std::string& url = kUrl, unsigned short lifetime = 60,
                  const std::vector<std::string>& scopes = {}) {
    ASSERT_THAT(Register(url, lifetime, scopes), SameResult(kSuccess));
    scripted_slp::ForgetCalls();
    services.ForgetCalls();
  }

  std::vector<std::string> RegisteredUrls() {
    std::vector<std::string> urls;
    for (const auto& [url, service] : agent.GetRegisteredServices()) {
      urls.push_back(url);
    }
    return urls;
  }

  static std::size_t Registrations() { return scripted_slp::Calls("SLPReg").size(); }

  TemporaryFolder folder;
  FakeClock clock;
  FakeServiceManager services{clock};
  FakeTimers timers;
  FakeFolders folders;
  CKelSLPServiceImpl agent{{services, clock, timers, folders}};
};

}  // namespace kelsd
