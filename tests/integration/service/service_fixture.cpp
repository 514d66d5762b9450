#include "integration/service/service_fixture.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "platform/posix/pid_file_probe.h"
#include "support/free_port.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

constexpr milliseconds kPause{5};

std::string NewFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kelsd-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder could be made");
  }
  return name;
}

std::string Content(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

pid_t HolderOf(const std::string& pid_file) {
  platform::PidFileState state;
  std::string problem;
  return platform::ProbePidFile(pid_file, state, problem) && state.held ? state.pid : 0;
}

}  // namespace

ServiceTest::ServiceTest() : folder_(NewFolder()), port_(slp::support::FreePort()) {
  StartCleaner();
  WriteStartCountingProgram();
  setenv("KELSD_SLPD", File("slpd").c_str(), 1);
  setenv("KELSD_SLPD_PIDFILE", PidFile().c_str(), 1);
  setenv("OpenSLPConfig", File("slp.conf").c_str(), 1);
}

ServiceTest::~ServiceTest() {
  close(cleaner_pipe_);
  waitpid(cleaner_, nullptr, 0);
}

void ServiceTest::TearDown() {
  EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
}

// A process of its own waits for the end of this one, however it comes, and clears up.
void ServiceTest::StartCleaner() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0 || (cleaner_ = fork()) < 0) {
    throw std::runtime_error("no process could be made");
  }
  if (cleaner_ != 0) {
    close(ends[0]);
    cleaner_pipe_ = ends[1];
    return;
  }
  close(ends[1]);
  char never = 0;
  while (read(ends[0], &never, 1) > 0) {
  }
  if (const pid_t daemon = HolderOf(PidFile()); daemon > 0) {
    kill(daemon, SIGKILL);
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
  _exit(0);
}

void ServiceTest::WriteStartCountingProgram() const {
  const std::string program = File("slpd");
  std::ofstream(program) << "#!/bin/sh\necho >> '" << File("starts") << "'\nexec '" << KELSD_SLPD_PROGRAM
                         << "' \"$@\"\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
}

void ServiceTest::WriteConfiguration(const std::string& further_lines) const {
  std::ofstream(File("slp.conf"), std::ios::binary)
      << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << port_ << "\n"
      << further_lines;
}

std::string ServiceTest::Configuration() const {
  return Content(File("slp.conf"));
}

std::string ServiceTest::Log() const {
  return Content(File("slpd.log"));
}

pid_t ServiceTest::DaemonPid() const {
  return HolderOf(PidFile());
}

int ServiceTest::DaemonStarts() const {
  return static_cast<int>(Content(File("starts")).size());
}

std::vector<std::string> Find(const std::string& type, const std::vector<std::string>& scopes) {
  std::vector<SKelServiceSearchResult> found;
  const SResult result = CKelSLPClient::FindServices(found, type, scopes, "", "127.0.0.1");
  if (result.IsNotOk()) {
    return {result.ToString()};
  }
  std::vector<std::string> urls;
  std::transform(found.begin(), found.end(), std::back_inserter(urls),
                 [](const SKelServiceSearchResult& service) { return service.URL; });
  std::sort(urls.begin(), urls.end());
  return urls;
}

bool WaitUntil(milliseconds limit, const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!done()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace kelsd::integration
