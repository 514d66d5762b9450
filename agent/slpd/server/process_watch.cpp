#include "slpd/server/process_watch.h"

#include <asio/steady_timer.hpp>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "slpd/server/processes.h"

namespace slp {
namespace {

constexpr std::chrono::seconds kPollInterval{1};

}  // namespace

class ProcessWatch::Impl : public std::enable_shared_from_this<ProcessWatch::Impl> {
 public:
  Impl(asio::io_context& io, Ended ended, Method method)
      : io_(io), ended_(std::move(ended)), method_(method), poll_timer_(io) {}

  bool Watch(std::uint32_t process_id) {
    if (notified_.count(process_id) > 0 || polled_.count(process_id) > 0) {
      return true;
    }
    if (method_ == Method::kNotified) {
      if (auto notice = ProcessNotice::Order(io_, process_id)) {
        notice->Wait([self = shared_from_this(), process_id](const asio::error_code& error) {
          if (!error && self->notified_.erase(process_id) > 0) {
            self->ended_(process_id);
          }
        });
        notified_.emplace(process_id, std::move(notice));
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
    const auto identity = ProcessesNow().IdentityOf(process_id);
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
    const ProcessesNow now;
    for (const auto& [process_id, identity] : polled_) {
      if (now.known() && now.IdentityOf(process_id) != identity) {
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
  std::map<std::uint32_t, std::unique_ptr<ProcessNotice>> notified_;
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
