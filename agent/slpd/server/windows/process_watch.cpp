#include "slpd/server/process_watch.h"

#include <windows.h>

#include <asio/windows/object_handle.hpp>
#include <map>

namespace slp {

// Every process of which the system gives a handle gives notice too, so that nothing is ever polled.
class ProcessWatch::Impl : public std::enable_shared_from_this<ProcessWatch::Impl> {
 public:
  Impl(asio::io_context& io, Ended ended) : io_(io), ended_(std::move(ended)) {}

  bool Watch(std::uint32_t process_id) {
    if (watched_.count(process_id) > 0) {
      return true;
    }
    const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, process_id);
    if (process == nullptr) {
      return false;
    }
    auto [entry, inserted] = watched_.try_emplace(process_id, io_, process);
    entry->second.async_wait([self = shared_from_this(), process_id](const asio::error_code& error) {
      if (!error && self->watched_.erase(process_id) > 0) {
        self->ended_(process_id);
      }
    });
    return true;
  }

  void Forget(std::uint32_t process_id) { watched_.erase(process_id); }

  void Close() {
    watched_.clear();
    ended_ = [](std::uint32_t) {};
  }

  std::size_t watched() const { return watched_.size(); }

 private:
  asio::io_context& io_;
  Ended ended_;
  std::map<std::uint32_t, asio::windows::object_handle> watched_;
};

ProcessWatch::ProcessWatch(asio::io_context& io, Ended ended, Method)
    : impl_(std::make_shared<Impl>(io, std::move(ended))) {}

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
