// A program that runs beside a test, with files for what it writes. One thread at a time.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelsd::support {

/// The exit status of a program that Kill ended.
constexpr int kKilled = 137;

class ChildProcess {
 public:
  using Milliseconds = std::chrono::milliseconds;

  /// `command`: the program's path and its arguments. Both files are made anew; nothing comes from the input.
  /// The program inherits no other file or socket. Throws std::runtime_error when it cannot be started.
  ChildProcess(const std::vector<std::string>& command, const std::string& output_file,
               const std::string& error_file);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Kills it if it still runs.
  ~ChildProcess();

  int id() const;

  /// The exit status, 128 and the signal's number when a signal ended it (on Windows that of SIGINT after
  /// Ctrl+C); none when it still runs after `limit`.
  std::optional<int> Wait(Milliseconds limit);

  /// Nothing happens when it has ended. On Windows SIGINT and SIGTERM are Ctrl+C on the console that the
  /// program has for itself, and others throw std::runtime_error.
  void Send(int signal);

  /// Ends it without any farewell, and waits for that.
  void Kill();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kelsd::support
