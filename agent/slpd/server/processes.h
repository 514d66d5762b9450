// What the system says about the processes of this host: a notice of one's end where it gives one, and a look
// at those there are. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace slp {

/// The system's notice that a process has ended. Deleting it takes the order back.
class ProcessNotice {
 public:
  ProcessNotice() = default;
  ProcessNotice(const ProcessNotice&) = delete;
  ProcessNotice& operator=(const ProcessNotice&) = delete;
  virtual ~ProcessNotice() = default;

  /// None when there is no such process, or the system gives this one no notice about it. Each takes a
  /// descriptor or a handle.
  static std::unique_ptr<ProcessNotice> Order(asio::io_context& io, std::uint32_t process_id);

  /// Calls `ended` once, from the loop: with an error when the order was taken back.
  virtual void Wait(std::function<void(const asio::error_code& error)> ended) = 0;
};

/// The processes of one moment, those of other users among them.
class ProcessesNow {
 public:
  ProcessesNow() = default;
  ProcessesNow(const ProcessesNow&) = delete;
  ProcessesNow& operator=(const ProcessesNow&) = delete;
  virtual ~ProcessesNow() = default;

  /// Never null.
  static std::unique_ptr<ProcessesNow> Look();

  /// Whether the system could tell. If not, nothing below holds; ask again later.
  virtual bool known() const = 0;

  /// A text by which a process is told apart from another one that gets its number later, empty where the
  /// system doesn't say; none when there is no such process, or it has ended.
  virtual std::optional<std::string> IdentityOf(std::uint32_t process_id) const = 0;
};

}  // namespace slp
