// Tells when processes of this host end, so that their registrations can go with them. Everything happens on
// the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace slp {

class ProcessWatch {
 public:
  using Ended = std::function<void(std::uint32_t process_id)>;

  /// How the system is asked. kNotified falls back to looking once a second, while anything is watched, for
  /// those processes of which the system gives no notice.
  enum class Method { kNotified, kPolled };

  ProcessWatch(asio::io_context& io, Ended ended, Method method = Method::kNotified);
  ProcessWatch(const ProcessWatch&) = delete;
  ProcessWatch& operator=(const ProcessWatch&) = delete;
  ~ProcessWatch();

  /// Whether the process exists and is watched from now on; watching twice is the same as once. `ended` is
  /// called once, from the loop and never from in here, after which the process is forgotten.
  bool Watch(std::uint32_t process_id);

  /// No notice about this process any more.
  void Forget(std::uint32_t process_id);

  std::size_t watched() const;

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace slp
