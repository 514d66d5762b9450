// A process for tests that does nothing but wait to be ended. One thread.
#pragma once

#include <cstdint>
#include <memory>

namespace slp {

class WaitingProcess {
 public:
  enum class For {
    kEverybody,
    kNobody,  ///< Windows: other processes may not open it, as if it were another account's
  };

  explicit WaitingProcess(For who = For::kEverybody);
  WaitingProcess(const WaitingProcess&) = delete;
  WaitingProcess& operator=(const WaitingProcess&) = delete;
  ~WaitingProcess();

  /// Ends it, and returns when it has ended. What it leaves behind stays until Reap.
  void Kill() const;

  /// Waits for its end and lets the system forget it.
  void Reap();

  std::uint32_t id() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace slp
