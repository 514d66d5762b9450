// Tells when processes of this host end, so that their registrations can go with them. Everything happens on
// the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "slpd/server/processes.h"

namespace slp {

class ProcessWatch {
 public:
  using Ended = std::function<void(std::uint32_t process_id)>;

  /// Each takes a descriptor, of which connections want some, too.
  static constexpr std::size_t kMostNotices = 256;

  /// A look at the processes there are.
  using Look = std::function<std::unique_ptr<ProcessesNow>()>;

  /// The system gives notice of the end of `most_notices` processes. Others, and those of which it gives no
  /// notice, are looked for once a second, while there are any.
  ProcessWatch(asio::io_context& io, Ended ended, std::size_t most_notices = kMostNotices,
               Look look = ProcessesNow::Look);
  ProcessWatch(const ProcessWatch&) = delete;
  ProcessWatch& operator=(const ProcessWatch&) = delete;
  ~ProcessWatch();

  /// Whether the process exists and is watched from now on; watching twice is the same as once. `ended` is
  /// called once, from the loop and never from in here, after which the process is forgotten. While the
  /// system can't tell whether there is such a process, it is taken to exist.
  bool Watch(std::uint32_t process_id);

  /// No notice about this process any more.
  void Forget(std::uint32_t process_id);

  std::size_t watched() const;

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace slp
