#include "slpd/server/process_watch.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace slp {
namespace {

constexpr std::chrono::seconds kPollInterval{1};

// A descriptor that becomes readable when the process ends; -1 when the system has none to give.
int OpenProcessDescriptor(std::uint32_t process_id) {
#ifdef SYS_pidfd_open
  return static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process_id), 0U));
#else
  static_cast<void>(process_id);
  return -1;
#endif
}

bool Exists(std::uint32_t process_id) {
  return ::kill(static_cast<pid_t>(process_id), 0) == 0 || errno == EPERM;
}

// When the process started, in a text that only this process has, so that another one which got its number
// later is told apart; nothing for one that has ended and waits to be reaped, and "" where the system doesn't
// say.
std::optional<std::string> Identity(std::uint32_t process_id) {
  constexpr int kFieldsUpToStartTime = 20;  // counted from the state, the first field behind the name
  std::ifstream file("/proc/" + std::to_string(process_id) + "/stat");
  std::string line;
  if (!std::getline(file, line)) {
    return "";
  }
  std::string::size_type position = line.rfind(')');
  if (position == std::string::npos || position + 2 >= line.size()) {
    return "";
  }
  position += 2;
  if (line[position] == 'Z' || line[position] == 'X') {
    return std::nullopt;
  }
  for (int field = 1; field < kFieldsUpToStartTime && position != std::string::npos; ++field) {
    position = line.find(' ', position);
    position += position == std::string::npos ? 0 : 1;
  }
  return position == std::string::npos ? "" : line.substr(position, line.find(' ', position) - position);
}

}  // namespace

class ProcessWatch::Impl : public std::enable_shared_from_this<ProcessWatch::Impl> {
 public:
  Impl(asio::io_context& io, Ended ended, Method method)
      : io_(io), ended_(std::move(ended)), method_(method), poll_timer_(io) {}

  bool Watch(std::uint32_t process_id) {
    if (process_id == 0 || process_id > static_cast<std::uint32_t>(std::numeric_limits<pid_t>::max())) {
      return false;
    }
    if (notified_.count(process_id) > 0 || polled_.count(process_id) > 0) {
      return true;
    }
    if (method_ == Method::kNotified) {
      const int descriptor = OpenProcessDescriptor(process_id);
      if (descriptor >= 0) {
        auto [entry, inserted] = notified_.try_emplace(process_id, io_, descriptor);
        entry->second.async_wait(asio::posix::stream_descriptor::wait_read,
                                 [self = shared_from_this(), process_id](const asio::error_code& error) {
                                   if (!error && self->notified_.erase(process_id) > 0) {
                                     self->ended_(process_id);
                                   }
                                 });
        return true;
      }
    }
    return Poll(process_id);
  }

  void Forget(std::uint32_t process_id) {
    notified_.erase(process_id);
    polled_.erase(process_id);
  }

  void Close() {
    notified_.clear();
    polled_.clear();
    poll_timer_.cancel();
    ended_ = [](std::uint32_t) {};
  }

  std::size_t watched() const { return notified_.size() + polled_.size(); }

 private:
  bool Poll(std::uint32_t process_id) {
    if (!Exists(process_id)) {
      return false;
    }
    const auto identity = Identity(process_id);
    if (!identity) {
      return false;
    }
    const bool first = polled_.empty();
    polled_[process_id] = *identity;
    if (first) {
      WaitForNextLook();
    }
    return true;
  }

  void WaitForNextLook() {
    poll_timer_.expires_after(kPollInterval);
    poll_timer_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error) {
        self->Look();
      }
    });
  }

  void Look() {
    std::vector<std::uint32_t> gone;
    for (const auto& [process_id, identity] : polled_) {
      if (!Exists(process_id) || Identity(process_id) != identity) {
        gone.push_back(process_id);
      }
    }
    for (const std::uint32_t process_id : gone) {
      if (polled_.erase(process_id) > 0) {
        ended_(process_id);
      }
    }
    if (!polled_.empty()) {
      WaitForNextLook();
    }
  }

  asio::io_context& io_;
  Ended ended_;
  Method method_;
  std::map<std::uint32_t, asio::posix::stream_descriptor> notified_;
  std::map<std::uint32_t, std::string> polled_;
  asio::steady_timer poll_timer_;
};

ProcessWatch::ProcessWatch(asio::io_context& io, Ended ended, Method method)
    : impl_(std::make_shared<Impl>(io, std::move(ended), method)) {}

ProcessWatch::~ProcessWatch() {
  impl_->Close();
}

bool ProcessWatch::Watch(std::uint32_t process_id) {
  return impl_->Watch(process_id);
}

void ProcessWatch::Forget(std::uint32_t process_id) {
  impl_->Forget(process_id);
}

std::size_t ProcessWatch::watched() const {
  return impl_->watched();
}

}  // namespace slp
