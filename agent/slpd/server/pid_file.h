// The file by which a running daemon is found: locked for as long as the daemon lives, and holding "PID
// START" (its process id and when it started, in seconds since 1970) from the moment it serves. One thread at
// a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace slp {

class PidFile {
 public:
  enum class Outcome {
    kLocked,
    kHeld,    ///< another process holds the lock: a daemon runs already
    kFailed,  ///< see the text
  };

  PidFile();
  PidFile(const PidFile&) = delete;
  PidFile& operator=(const PidFile&) = delete;

  /// Empties the file and gives up the lock. The file itself stays: removing it would let two daemons hold
  /// locks on two files of one name.
  ~PidFile();

  /// Creates the file if need be, locks and empties it. `problem` is set when the outcome is not kLocked. A
  /// short lock by someone who only looks whether a daemon runs is waited for, up to a fifth of a second. On
  /// POSIX systems it must be a regular file, no symbolic link, and have no second name.
  Outcome Lock(const std::string& path, std::string& problem);

  /// Says that the daemon serves. Whether it could be written.
  [[nodiscard]] bool Announce(std::int64_t start_seconds);

 private:
  struct Handle;
  std::unique_ptr<Handle> handle_;
};

}  // namespace slp
