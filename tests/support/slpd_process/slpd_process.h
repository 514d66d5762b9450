// The built slpd as a process of its own: on loopback only, on a free port, with its configuration,
// registration, pid and log file in a temporary folder. One thread at a time.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/child_process/child_process.h"
#include "support/fake_platform/temporary_folder.h"

namespace slp::support {

struct SlpdOptions {
  std::string address = "127.0.0.1";        ///< net.slp.interfaces, of the loopback network
  std::string configuration = {};           ///< further lines of the configuration file
  std::string registrations = {};           ///< content of the registration file
  std::vector<std::string> arguments = {};  ///< further ones
  std::uint16_t port = 0;                   ///< 0: a free one
  std::string folder = {};                  ///< empty: a temporary one, removed at the end
};

class SlpdProcess {
 public:
  using Milliseconds = std::chrono::milliseconds;

  /// Starts slpd and returns when it serves or has ended; see Running. A free port that somebody else took in
  /// the meantime is replaced by another one.
  explicit SlpdProcess(const SlpdOptions& options = {});
  SlpdProcess(const SlpdProcess&) = delete;
  SlpdProcess& operator=(const SlpdProcess&) = delete;

  bool Running();

  /// Asks it to end; the exit status, 128 and the signal's number when a signal ended it, none when it didn't
  /// end within `limit`.
  std::optional<int> Stop(Milliseconds limit = Milliseconds(10'000));

  /// Waits for the end without asking for it.
  std::optional<int> Wait(Milliseconds limit);

  /// See ChildProcess.
  void Send(int signal);

  /// Sends the signal that asks for it, and waits until the log tells how that went.
  void Reload(int signal);

  /// Everything that slpd wrote to its error output, the log among it.
  std::string Log() const;

  /// Whether the log came to hold `text` within `limit`.
  bool WaitForLog(const std::string& text, Milliseconds limit = Milliseconds(10'000)) const;

  /// Replace the files; the next Reload reads them.
  void WriteConfiguration(const std::string& further_lines) const;
  void WriteRegistrations(const std::string& content) const;

  std::uint16_t port() const { return port_; }
  int process_id() const { return process_->id(); }
  const std::string& address() const { return options_.address; }
  std::string configuration_file() const { return folder_ + "slp.conf"; }
  std::string registration_file() const { return folder_ + "slp.reg"; }
  std::string pid_file() const { return folder_ + "slpd.pid"; }
  std::string log_file() const { return folder_ + "slpd.err"; }

 private:
  std::string output_file() const { return folder_ + "slpd.out"; }
  void Start();
  bool WaitUntilItServes();

  SlpdOptions options_;
  std::optional<kelsd::TemporaryFolder> own_folder_;
  std::string folder_;  // ends with the separator
  std::uint16_t port_ = 0;
  std::optional<kelsd::support::ChildProcess> process_;  // ends before its folder goes
};

}  // namespace slp::support
