#include "platform/service_manager.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/fake_platform/environment.h"
#include "support/fake_platform/fake_clock.h"
#include "support/fake_platform/fake_service_manager.h"
#include "support/fake_platform/temporary_folder.h"
#include "support/idle_process.h"
#include "support/run_program/run_program.h"
#include "support/without_privileges.h"

namespace kelsd::platform {
namespace {

// What holds for the system's daemon and for the one that other tests play.
class ServiceManagerContract : public testing::TestWithParam<bool> {
 protected:
  ServiceManagerContract() {
    SetEnvironment("KELSD_SLPD", KELSD_TEST_DAEMON_PROGRAM);
    SetEnvironment("KELSD_SLPD_PIDFILE", folder_.Path("slpd.pid"));
    fake_.SetState(kServiceStopped);
    manager_ = services().OpenManager(service_access::kManagerReadControl);
    service_ = services().OpenNamed(
        manager_, "slpd", service_access::kQueryStatus | service_access::kStart | service_access::kStop);
  }
  ~ServiceManagerContract() override {
    ServiceStatus status;
    if (State() == kServiceRunning) {
      EXPECT_TRUE(services().RequestStop(service_, status));
    }
    EXPECT_TRUE(Reaches(kServiceStopped));
    services().CloseManaged(service_);
    services().CloseManaged(manager_);
    ClearEnvironment("KELSD_SLPD");
    ClearEnvironment("KELSD_SLPD_PIDFILE");
    ClearEnvironment("KELSD_TEST_DAEMON");
  }
  ServiceManagerContract(const ServiceManagerContract&) = delete;
  ServiceManagerContract& operator=(const ServiceManagerContract&) = delete;

  ServiceManager& services() { return GetParam() ? static_cast<ServiceManager&>(fake_) : SystemServices(); }

  std::uint32_t State() {
    ServiceStatus status;
    EXPECT_TRUE(services().QueryStatus(service_, status));
    return status.current_state;
  }

  bool Reaches(std::uint32_t state) {
    for (int i = 0; i < 1000; ++i) {
      if (State() == state) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
  }

  TemporaryFolder folder_;
  FakeClock clock_;
  FakeServiceManager fake_{clock_};
  ServiceManager::Handle manager_ = nullptr;
  ServiceManager::Handle service_ = nullptr;
};

TEST_P(ServiceManagerContract, StartsAndStops) {
  ASSERT_NE(manager_, nullptr);
  ASSERT_NE(service_, nullptr);
  EXPECT_EQ(State(), kServiceStopped);
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
    EXPECT_TRUE(Reaches(kServiceRunning));
    ServiceStatus status;
    EXPECT_TRUE(services().RequestStop(service_, status));
    EXPECT_TRUE(Reaches(kServiceStopped));
  }
}

TEST_P(ServiceManagerContract, TellsWhenTheServicesProcessWasCreated) {
  const std::int64_t before = GetParam() ? clock_.Now() : std::time(nullptr);
  ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
  ASSERT_TRUE(Reaches(kServiceRunning));
  const std::int64_t after = GetParam() ? clock_.Now() : std::time(nullptr);
  ServiceStatus status;
  ASSERT_TRUE(services().QueryStatus(service_, status));
  EXPECT_NE(status.process_id, 0U);
  const ServiceManager::Handle process = services().OpenServiceProcess(status.process_id);
  ASSERT_NE(process, nullptr);
  std::int64_t created = 0;
  EXPECT_TRUE(services().CreationTime(process, created));
  EXPECT_GE(created, before);
  EXPECT_LE(created, after);
  services().CloseProcess(process);
}

TEST_P(ServiceManagerContract, KnowsNoOtherService) {
  EXPECT_EQ(services().OpenNamed(manager_, "other", service_access::kQueryStatus), nullptr);
  EXPECT_EQ(services().LastErrorText(), "There is no service 'other'.");
}

INSTANTIATE_TEST_SUITE_P(SystemAndFake, ServiceManagerContract, testing::Bool(),
                         [](const auto& row) { return row.param ? "Fake" : "System"; });

/// Takes standard descriptors away from this process while it lives, as a program has it that left its
/// terminal.
class ClosedDescriptor {
 public:
  explicit ClosedDescriptor(int descriptor)
      : descriptor_(descriptor), kept_(fcntl(descriptor, F_DUPFD_CLOEXEC, kAboveStandard)) {
    EXPECT_EQ(close(descriptor_), 0);
  }
  ~ClosedDescriptor() {
    EXPECT_EQ(dup2(kept_, descriptor_), descriptor_);
    close(kept_);
  }
  ClosedDescriptor(const ClosedDescriptor&) = delete;
  ClosedDescriptor& operator=(const ClosedDescriptor&) = delete;

 private:
  static constexpr int kAboveStandard = 3;
  const int descriptor_;
  const int kept_;
};

// What only the daemon that is a process does.
class ProcessDaemon : public ServiceManagerContract {};

TEST_P(ProcessDaemon, GivesItsLastWordsAsTheReason) {
  SetEnvironment("KELSD_TEST_DAEMON", "fails");
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_EQ(services().LastErrorText(), "port 427 is taken");
  ServiceStatus status;
  EXPECT_TRUE(services().QueryStatus(service_, status));
  EXPECT_EQ(status, (ServiceStatus{.current_state = kServiceStopped, .exit_code = 3}));
}

TEST_P(ProcessDaemon, GivesItsLastWordsToAProcessWithoutStandardDescriptors) {
  SetEnvironment("KELSD_TEST_DAEMON", "fails");
  for (const int first : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    std::string words;
    {
      std::vector<std::unique_ptr<ClosedDescriptor>> closed;
      for (int descriptor = first; descriptor <= STDERR_FILENO; ++descriptor) {
        closed.push_back(std::make_unique<ClosedDescriptor>(descriptor));
      }
      EXPECT_FALSE(services().RequestStart(service_));
      words = services().LastErrorText();
    }
    EXPECT_EQ(words, "port 427 is taken") << "without " << first << " and above";
  }
  for (const int only : {STDIN_FILENO, STDOUT_FILENO}) {
    std::string words;
    {
      const ClosedDescriptor closed(only);
      EXPECT_FALSE(services().RequestStart(service_));
      words = services().LastErrorText();
    }
    EXPECT_EQ(words, "port 427 is taken") << "without " << only;
  }
}

TEST_P(ProcessDaemon, ThatEndsWithoutAWordIsKnownByItsStatus) {
  SetEnvironment("KELSD_TEST_DAEMON", "silent");
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_EQ(services().LastErrorText(), "slpd ended with status 4.");
  SetEnvironment("KELSD_TEST_DAEMON", "crashes");
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_EQ(services().LastErrorText(), "slpd ended with status 137.");
}

TEST_P(ProcessDaemon, ThatDoesNotExistIsTheReason) {
  SetEnvironment("KELSD_SLPD", folder_.Path("nothing"));
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_EQ(services().LastErrorText(), folder_.Path("nothing") + ": No such file or directory");
}

TEST_P(ProcessDaemon, ThatAnotherProcessStartedAtTheSameMomentIsAsGood) {
  pid_t other = 0;
  std::string pid_file = folder_.Path("slpd.pid");
  std::array<std::string, 5> words{KELSD_TEST_DAEMON_PROGRAM, "--pidfile", pid_file, "--log", "none"};
  std::array<char*, 6> arguments{};
  std::transform(words.begin(), words.end(), arguments.begin(),
                 [](std::string& word) { return word.data(); });
  ASSERT_EQ(posix_spawn(&other, words[0].c_str(), nullptr, nullptr, arguments.data(), environ), 0);
  ASSERT_TRUE(Reaches(kServiceRunning));
  EXPECT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
  ServiceStatus status;
  EXPECT_TRUE(services().QueryStatus(service_, status));
  EXPECT_EQ(status.current_state, kServiceRunning);
  EXPECT_EQ(status.process_id, static_cast<std::uint32_t>(other));
  EXPECT_TRUE(services().RequestStop(service_, status)) << services().LastErrorText();
  EXPECT_EQ(waitpid(other, nullptr, 0), other);
  EXPECT_EQ(State(), kServiceStopped);
}

TEST_P(ProcessDaemon, WhosePidFileCannotBeLookedAtIsAFailure) {
  const std::string pid_file = folder_.Write("file", "") + "/slpd.pid";
  SetEnvironment("KELSD_SLPD_PIDFILE", pid_file);
  const ServiceManager::Handle service = services().OpenNamed(
      manager_, "slpd", service_access::kQueryStatus | service_access::kStart | service_access::kStop);
  ASSERT_NE(service, nullptr);
  ServiceStatus status{.current_state = kServiceRunning};
  EXPECT_FALSE(services().QueryStatus(service, status));
  EXPECT_EQ(services().LastErrorText(), pid_file + ": Not a directory");
  EXPECT_EQ(status, (ServiceStatus{.current_state = kServiceRunning}));
  EXPECT_FALSE(services().RequestStop(service, status));
  EXPECT_EQ(services().LastErrorText(), pid_file + ": Not a directory");
  EXPECT_EQ(services().OpenServiceProcess(1), nullptr);
  EXPECT_EQ(services().LastErrorText(), pid_file + ": Not a directory");
  services().CloseManaged(service);
  SetEnvironment("KELSD_SLPD_PIDFILE", folder_.Path("slpd.pid"));
}

TEST_P(ProcessDaemon, WithoutAPlaceForItsPidFileIsAFailure) {
  ClearEnvironment("KELSD_SLPD_PIDFILE");
  ClearEnvironment("XDG_RUNTIME_DIR");
  {
    const support::WithoutPrivileges user;
    EXPECT_EQ(services().OpenNamed(manager_, "slpd", service_access::kQueryStatus), nullptr);
    EXPECT_EQ(services().LastErrorText(),
              "There is no place for the pid file: set KELSD_SLPD_PIDFILE or XDG_RUNTIME_DIR.");
  }
  SetEnvironment("KELSD_SLPD_PIDFILE", folder_.Path("slpd.pid"));
}

TEST_P(ProcessDaemon, IsLookedForBesideTheProgram) {
  struct Row {
    const char* of_the_library;
    const char* of_the_daemon;
    const char* found;  ///< from the library's folder
  };
  ClearEnvironment("KELSD_SLPD");
  SetEnvironment("KELSD_TEST_DAEMON", "fails");
  int number = 0;
  for (const Row& row : {
           Row{"lib", "sbin", "/../sbin/slpd"},
           Row{"lib/x86_64-linux-gnu", "sbin", "/../../sbin/slpd"},
           Row{"lib", "bin", "/../bin/slpd"},
           Row{"lib", "lib", "/slpd"},
       }) {
    const std::filesystem::path prefix = folder_.Path("prefix" + std::to_string(number++));
    for (const char* folder : {row.of_the_library, row.of_the_daemon}) {
      std::filesystem::create_directories(prefix / folder);
    }
    const std::filesystem::path starter = prefix / row.of_the_library / "starter";
    std::filesystem::copy_file(KELSD_DAEMON_STARTER_PROGRAM, starter);
    std::filesystem::copy_file(KELSD_TEST_DAEMON_PROGRAM, prefix / row.of_the_daemon / "slpd");
    EXPECT_EQ(support::RunProgram({starter.string()}).output,
              starter.parent_path().string() + row.found + "\nport 427 is taken\n");
  }
}

TEST_P(ProcessDaemon, ThatIsNowhereIsTheReason) {
  ClearEnvironment("KELSD_SLPD");
  std::filesystem::create_directory(folder_.Path("lib"));
  const std::string starter = folder_.Path("lib/starter");
  std::filesystem::copy_file(KELSD_DAEMON_STARTER_PROGRAM, starter);
  EXPECT_EQ(support::RunProgram({starter}).output,
            "\nThe program slpd was not found beside this library: set KELSD_SLPD to where it is.\n");
}

TEST_P(ProcessDaemon, ThatWasKilledDoesNotRun) {
  ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
  ServiceStatus status;
  ASSERT_TRUE(services().QueryStatus(service_, status));
  ASSERT_EQ(status.current_state, kServiceRunning);
  kill(static_cast<pid_t>(status.process_id), SIGKILL);
  EXPECT_TRUE(Reaches(kServiceStopped));
  EXPECT_EQ(services().OpenServiceProcess(status.process_id), nullptr);
  EXPECT_EQ(services().LastErrorText(), "No such process");
  ServiceStatus stopped;
  EXPECT_FALSE(services().RequestStop(service_, stopped));
  EXPECT_EQ(services().LastErrorText(), "slpd is not running.");
}

TEST_P(ProcessDaemon, ThatWasKilledIsNotMistakenForAStrangerWithItsNumber) {
  const support::IdleProcess stranger;
  const std::string pid_file = folder_.Write("slpd.pid", std::to_string(stranger.pid()) + " 1000000\n");
  const int locked = open(pid_file.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(locked, LOCK_EX | LOCK_NB), 0);
  ServiceStatus status;
  EXPECT_FALSE(services().RequestStop(service_, status));
  EXPECT_EQ(services().LastErrorText(), "slpd is not running.");
  ASSERT_TRUE(services().QueryStatus(service_, status));
  EXPECT_EQ(status.process_id, 0U);
  close(locked);
  EXPECT_TRUE(stranger.Lives());
}

INSTANTIATE_TEST_SUITE_P(System, ProcessDaemon, testing::Values(false));

}  // namespace
}  // namespace kelsd::platform
