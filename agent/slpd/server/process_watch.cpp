#include "slpd/server/process_watch.h"

#include <asio/steady_timer.hpp>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace slp {
namespace {

constexpr std::chrono::seconds kPollInterval{1};

}  // namespace

class ProcessWatch::Impl : public std::enable_shared_from_this<ProcessWatch::Impl> {
 public:
  Impl(asio::io_context& io, Ended ended, std::size_t most_notices, Look look)
      : io_(io),
        ended_(std::move(ended)),
        most_notices_(most_notices),
        look_(std::move(look)),
        poll_timer_(io) {}

  bool Watch(std::uint32_t process_id) {
    if (notified_.count(process_id) > 0 || polled_.count(process_id) > 0) {
      return true;
    }
    if (notified_.size() < most_notices_) {
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
    const auto now = look_();
    const auto identity = now->known() ? now->IdentityOf(process_id) : "";
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
        self->LookForAll();
      }
    });
  }

  void LookForAll() {
    std::vector<std::uint32_t> gone;
    const auto now = look_();
    for (auto& [process_id, identity] : polled_) {
      if (now->known() && !IsStillThere(identity, now->IdentityOf(process_id))) {
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

  // Whether the process of identity `before` is the one that is there now. What hasn't been known so far is
  // taken down.
  static bool IsStillThere(std::string& before, const std::optional<std::string>& now) {
    if (!now) {
      return false;
    }
    if (before.empty()) {
      before = *now;
    }
    return now->empty() || *now == before;
  }

  asio::io_context& io_;
  Ended ended_;
  std::size_t most_notices_;
  Look look_;
  std::map<std::uint32_t, std::unique_ptr<ProcessNotice>> notified_;
  std::map<std::uint32_t, std::string> polled_;  // their identities
  asio::steady_timer poll_timer_;
};

ProcessWatch::ProcessWatch(asio::io_context& io, Ended ended, std::size_t most_notices, Look look)
    : impl_(std::make_shared<Impl>(io, std::move(ended), most_notices, std::move(look))) {}

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
