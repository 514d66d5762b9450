// A configuration file that cannot be written, or not even read: the disk is full, the file is not ours, or
// it is no file at all.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

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

TEST_F(UnwritableFile, AFullDiskLeavesNoFileThatWasNotThere) {
  std::filesystem::remove(folder.Path("slp.conf"));
  const std::string name = kAgentName + "SetLocalScopes ";
  const FullDisk full(4);
  EXPECT_THAT(agent.SetLocalScopes({"tamro"}),
              SameResult(SResult(SResult::ERR_CONF_WRITE, folder.Path("slp.conf"),
                                 name + name + "CSLPConfAccess::Update")));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("slp.conf")));
}

/// A pipe in the file's place can be opened and locked, but not be read from its start.
class UnreadableFile : public ServiceFixture {
 protected:
  UnreadableFile() {
    std::filesystem::remove(folder.Path("slp.conf"));
    EXPECT_EQ(mkfifo(folder.Path("slp.conf").c_str(), 0600), 0);
  }

  SResult NotLoaded(const std::string& trail) const {
    return {SResult::ERR_CONF_LOAD, folder.Path("slp.conf"), trail};
  }
};

TEST_F(UnreadableFile, IsReportedByEveryUseOfTheFile) {
  EXPECT_THAT(agent.SetLocalScopes({"tamro"}), SameResult(NotLoaded(kAgentName + "SetLocalScopes ")));
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors),
              SameResult(NotLoaded(kAgentName + "GetSLPServiceConfigFromFileInternal ")));
  EXPECT_EQ(errors.size(), 1U);
  scripted_slp::SetFileProperty("net.slp.MTU", "1000");
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
              SameResult(NotLoaded(kAgentName + "SetSLPServiceConfig " + kAgentName +
                                   "SetSLPServiceConfigInternal ")));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(services.Calls(), testing::IsEmpty());
}

}  // namespace
}  // namespace kelsd
