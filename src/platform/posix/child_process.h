// A program started in a session of its own, without the caller's descriptors and signal settings. One thread
// at a time.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace kelsd::platform {

class ChildProcess {
 public:
  /// Starts `program`; `arguments` without the program's own name. None, with `problem` set, when that fails.
  static std::optional<ChildProcess> Start(const std::string& program,
                                           const std::vector<std::string>& arguments, std::string& problem);

  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// The program itself runs on.
  ~ChildProcess();

  pid_t pid() const { return pid_; }

  /// Whether the program still runs; once it does not, it is never asked again.
  bool Runs();
  /// Only after Runs() has said no: the exit status, 128 and the signal's number for one that a signal ended.
  int exit_status() const { return exit_status_; }

  /// The last line that is not empty of what the program wrote to its error output so far.
  std::string LastWords() const;
  /// Lets go of the error output, once nobody will ask for it any more.
  void ForgetErrorOutput();

 private:
  ChildProcess(pid_t pid, int error_output) : pid_(pid), error_output_(error_output) {}

  pid_t pid_ = -1;
  int error_output_ = -1;
  bool runs_ = true;
  int exit_status_ = 0;
};

}  // namespace kelsd::platform
