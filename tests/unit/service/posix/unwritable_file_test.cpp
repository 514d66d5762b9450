// A configuration file that cannot be written: the disk is full, or the file is not ours.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "../service_fixture.h"
#include "support/without_privileges.h"

namespace kelsd {
namespace {

/// No file of this process grows beyond `bytes` while it lives: writing more fails as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

class UnwritableFile : public ServiceFixture {
 protected:
  const std::string before_ = "# ours\nnet.slp.useScopes = DEFAULT\n";
};

TEST_F(UnwritableFile, AFullDiskIsReportedAndLosesNothing) {
  folder.Write("slp.conf", before_);
  const std::string name = kAgentName + "SetSLPServiceConfigInternal ";
  const FullDisk full(before_.size() + 4);
  EXPECT_THAT(
      agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
      SameResult(SResult(SResult::ERR_CONF_WRITE, folder.Path("slp.conf"),
                         kAgentName + "SetSLPServiceConfig " + name + name + "CSLPConfAccess::Update")));
  EXPECT_EQ(folder.Read("slp.conf"), before_);
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(services.CountCalls("StartService"), 0U);
}

TEST_F(UnwritableFile, AFullDiskIsReportedByARegistrationWithANewScope) {
  folder.Write("slp.conf", before_);
  const std::string name = kAgentName + "SetLocalScopes ";
  const FullDisk full(before_.size());
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}),
              SameResult(SResult(SResult::ERR_CONF_WRITE, folder.Path("slp.conf"),
                                 kAgentName + "RegisterService " + name + name + "CSLPConfAccess::Update")));
  EXPECT_EQ(folder.Read("slp.conf"), before_);
  EXPECT_EQ(Registrations(), 0U);
}

TEST_F(UnwritableFile, AFileThatIsNotOursIsReported) {
  folder.Write("slp.conf", before_);
  std::filesystem::permissions(folder.Path("slp.conf"), std::filesystem::perms(0444));
  const support::WithoutPrivileges user;
  EXPECT_THAT(
      agent.SetLocalScopes({"tamro"}),
      SameResult(SResult(SResult::ERR_CONF_OPEN, folder.Path("slp.conf"), kAgentName + "SetLocalScopes ")));
  EXPECT_EQ(folder.Read("slp.conf"), before_);
}

}  // namespace
}  // namespace kelsd
