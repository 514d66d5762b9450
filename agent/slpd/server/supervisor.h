// Who looks after a running daemon: gives it its orders and hears how it goes. A terminal and the service
// manager do this each in their own way; all that the daemon does itself is the same.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace slp {

/// What the daemon does when it is told to. Called on the thread that runs its event loop.
struct Orders {
  std::function<void()> stop;    ///< end cleanly
  std::function<void()> reload;  ///< read the configuration and the registration file anew
};

/// All members but the destructor are called on the thread that runs the daemon's event loop.
class Supervisor {
 public:
  Supervisor() = default;
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;
  virtual ~Supervisor() = default;

  /// Orders can come from now on. Called once, before the event loop runs.
  virtual void Follow(Orders orders) = 0;

  /// A step of the start is done, another one begins.
  virtual void OnProgress() = 0;
  /// The daemon serves.
  virtual void OnServing() = 0;
  /// The daemon has been told to end and does so.
  virtual void OnEnding() = 0;
  /// The daemon could not start; nothing follows.
  virtual void OnFailure(const std::string& reason) = 0;
  /// Something that the administrator should look at; the log has it too.
  virtual void OnProblem(std::string_view text) = 0;
};

}  // namespace slp
