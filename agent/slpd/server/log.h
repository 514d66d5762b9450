// The daemon's log: one readable line an event, "TIME KIND TEXT". A flood of one kind is cut to so many lines
// a minute and says how many it left out. One thread at a time.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

namespace slp {

enum class LogKind {
  kState,         ///< start, stop, reload: what the daemon does
  kProblem,       ///< what the administrator should look at
  kRegistration,  ///< net.slp.traceReg
  kMessage,       ///< net.slp.traceMsg
  kDrop,          ///< net.slp.traceDrop
  kRefusal,       ///< a registration that another host may not make, a request that asks for too much
};

class Log {
 public:
  using Clock = std::function<std::chrono::system_clock::time_point()>;

  /// Writes to `stream`, which outlives the log, until Open leads it elsewhere.
  Log(std::ostream& stream, Clock clock);

  /// Leads the log into a file, at whose end it goes on with `append`. False, and the log stays where it is,
  /// when the file can't be opened; `problem` says why. Opening the same file anew follows one that was moved
  /// away.
  bool Open(const std::string& path, bool append, std::string& problem);

  /// Calls `tell` with every problem from now on, after it was written; a flood of them is cut as in the log.
  void TellProblems(std::function<void(std::string_view text)> tell);

  /// Control characters are written escaped, so that nothing from the network can forge a line.
  void Write(LogKind kind, std::string_view text);

 private:
  struct Allowance {
    std::chrono::system_clock::time_point since{};
    std::size_t written = 0;
    std::size_t left_out = 0;
  };

  void WriteLine(std::chrono::system_clock::time_point time, LogKind kind, std::string_view text);

  std::ostream* stream_;
  std::unique_ptr<std::ostream> file_;
  Clock clock_;
  std::function<void(std::string_view)> tell_problem_;
  std::array<Allowance, 6> allowances_;
};

}  // namespace slp
