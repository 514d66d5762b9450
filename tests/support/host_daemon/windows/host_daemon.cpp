#include "support/host_daemon/host_daemon.h"

#include <process.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <thread>

#include "support/free_port.h"
#include "support/host_daemon/windows/slpd_service.h"

namespace kelsd::support {
namespace {

std::string NewFolder() {
  const auto folder =
      std::filesystem::temp_directory_path() / ("kelsd-" + std::to_string(std::random_device()()));
  std::filesystem::create_directory(folder);
  return folder.string();
}

// The build names it as the host that builds does.
std::string Program() {
  return std::filesystem::absolute(KELSD_SLPD_PROGRAM).make_preferred().string();
}

std::string Quoted(const std::string& argument) {
  return "\"" + argument + "\"";
}

}  // namespace

struct HostDaemon::State {};

// A test that crashed may have left its service.
HostDaemon::HostDaemon() : folder_(NewFolder()) {
  RemoveSlpdService();
  const std::string program = Program();
  if (_spawnl(_P_WAIT, program.c_str(), Quoted(program).c_str(), "install", "--config",
              Quoted(File("slp.conf")).c_str(), "--log", Quoted(File("slpd.log")).c_str(), nullptr) != 0) {
    throw std::runtime_error("slpd install has failed");
  }
  _putenv_s("OpenSLPConfig", File("slp.conf").c_str());
}

HostDaemon::~HostDaemon() {
  RemoveSlpdService();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

unsigned long HostDaemon::ProcessId() const {
  return SlpdServiceStatus().dwProcessId;
}

int HostDaemon::Starts() const {
  const std::string log = FileContent(File("slpd.log"));
  const std::string ready = "slpd: ready on ";
  int starts = 0;
  for (auto at = log.find(ready); at != std::string::npos; at = log.find(ready, at + 1)) {
    ++starts;
  }
  return starts;
}

void HostDaemon::Kill() const {
  TerminateSlpdService();
}

// The daemon runs, but serves on another port.
void HostDaemon::RunWithoutServing(unsigned short) {
  RemoveSlpdService();
  CreateSlpdService(Quoted(Program()) +
                    " run --property net.slp.interfaces=127.0.0.1 --property net.slp.port=" +
                    std::to_string(slp::support::FreePort()));
  StartSlpdService();
  while (SlpdServiceStatus().dwCurrentState == SERVICE_START_PENDING) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace kelsd::support
