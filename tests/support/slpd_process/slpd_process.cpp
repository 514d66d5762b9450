#include "support/slpd_process/slpd_process.h"

#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/free_port.h"
#include "support/wait_until.h"

namespace slp::support {
namespace {

constexpr int kPortTries = 5;
constexpr std::chrono::seconds kStartLimit{20};

using kelsd::support::WaitUntil;

std::string Content(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

}  // namespace

SlpdProcess::SlpdProcess(const SlpdOptions& options) : options_(options), folder_(options.folder) {
  if (folder_.empty()) {
    own_folder_.emplace();
    folder_ = own_folder_->Path("");
  }
  WriteRegistrations(options_.registrations);
  for (int attempt = 0; attempt < kPortTries; ++attempt) {
    port_ = options_.port != 0 ? options_.port : FreePort(options_.address);
    WriteConfiguration(options_.configuration);
    Start();
    if (WaitUntilItServes() || options_.port != 0 ||
        Log().find("Address already in use") == std::string::npos) {
      return;
    }
  }
}

bool SlpdProcess::Running() {
  return !Wait(Milliseconds(0));
}

std::optional<int> SlpdProcess::Stop(Milliseconds limit) {
  Send(SIGTERM);
  return Wait(limit);
}

std::optional<int> SlpdProcess::Wait(Milliseconds limit) {
  return process_->Wait(limit);
}

void SlpdProcess::Send(int signal) {
  process_->Send(signal);
}

void SlpdProcess::Reload(int signal) {
  // The end of a line is written after the rest of it.
  const auto reloads = [this] {
    std::string log = Log();
    log.resize(log.rfind('\n') + 1);
    return CountOf(log, "slpd: reloaded") + CountOf(log, "slpd: not reloaded");
  };
  const std::size_t before = reloads();
  Send(signal);
  if (!WaitUntil([&] { return reloads() > before; }, kStartLimit)) {
    throw std::runtime_error("slpd did not reload: " + Log());
  }
}

std::string SlpdProcess::Log() const {
  return Content(log_file());
}

bool SlpdProcess::WaitForLog(const std::string& text, Milliseconds limit) const {
  return WaitUntil([&] { return Log().find(text) != std::string::npos; }, limit);
}

void SlpdProcess::WriteConfiguration(const std::string& further_lines) const {
  WriteFile(configuration_file(), "net.slp.interfaces = " + options_.address +
                                      "\nnet.slp.port = " + std::to_string(port_) + "\n" + further_lines);
}

void SlpdProcess::WriteRegistrations(const std::string& content) const {
  WriteFile(registration_file(), content);
}

void SlpdProcess::Start() {
  std::vector<std::string> command{KELSD_SLPD_PROGRAM, "--config",          configuration_file(),
                                   "--regfile",        registration_file(), "--pidfile",
                                   pid_file()};
  command.insert(command.end(), options_.arguments.begin(), options_.arguments.end());
  process_.reset();
  process_.emplace(command, output_file(), log_file());
}

bool SlpdProcess::WaitUntilItServes() {
  const std::string ours = std::to_string(process_id()) + " ";
  WaitUntil([&] { return !Running() || Content(pid_file()).compare(0, ours.size(), ours) == 0; },
            kStartLimit);
  return Running();
}

}  // namespace slp::support
