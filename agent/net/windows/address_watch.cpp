#include "net/address_watch.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <asio/steady_timer.hpp>
#include <asio/windows/object_handle.hpp>
#include <chrono>

namespace slp {
namespace {

// An interface that comes up reports several times.
constexpr std::chrono::milliseconds kQuietTime{300};

}  // namespace

class AddressWatch::Impl : public std::enable_shared_from_this<AddressWatch::Impl> {
 public:
  Impl(asio::io_context& io, std::function<void()> changed)
      : changed_(std::move(changed)), event_(io), quiet_(io) {}

  // The system signals the event once per request.
  void Wait() {
    if (!event_.is_open()) {
      overlapped_.hEvent = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
      if (overlapped_.hEvent == nullptr) {
        return;
      }
      event_.assign(overlapped_.hEvent);
    }
    HANDLE unused = nullptr;
    if (::NotifyAddrChange(&unused, &overlapped_) != ERROR_IO_PENDING) {
      return;
    }
    event_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && self->changed_) {
        self->OnReport();
      }
    });
  }

  void Close() {
    changed_ = nullptr;
    if (event_.is_open()) {
      ::CancelIPChangeNotify(&overlapped_);
    }
    asio::error_code ignored;
    event_.close(ignored);
    quiet_.cancel();
  }

 private:
  void OnReport() {
    quiet_.expires_after(kQuietTime);
    quiet_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && self->changed_) {
        self->changed_();
      }
    });
    Wait();
  }

  std::function<void()> changed_;
  OVERLAPPED overlapped_{};
  asio::windows::object_handle event_;
  asio::steady_timer quiet_;
};

AddressWatch::AddressWatch(asio::io_context& io, std::function<void()> changed)
    : impl_(std::make_shared<Impl>(io, std::move(changed))) {
  impl_->Wait();
}

AddressWatch::~AddressWatch() {
  impl_->Close();
}

}  // namespace slp
