#include "net/address_watch.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <asio/steady_timer.hpp>
#include <asio/windows/object_handle.hpp>
#include <chrono>

#include "net/report_gathering.h"

namespace slp {

class AddressWatch::Impl : public std::enable_shared_from_this<AddressWatch::Impl> {
 public:
  Impl(asio::io_context& io, std::function<void()> changed)
      : changed_(std::move(changed)), event_(io), ipv6_event_(io), act_(io) {}

  void Start() {
    Wait();
    StartIpv6();
  }

  void Close() {
    changed_ = nullptr;
    if (event_.is_open()) {
      ::CancelIPChangeNotify(&overlapped_);
    }
    // No report comes after that, so nobody needs the event any more.
    if (ipv6_reports_ != nullptr) {
      ::CancelMibChangeNotify2(ipv6_reports_);
    }
    asio::error_code ignored;
    event_.close(ignored);
    ipv6_event_.close(ignored);
    act_.cancel();
  }

 private:
  // The system signals the event once per request, and of addresses of IPv4 alone.
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

  // Reports come on a thread of the system's, until they are cancelled.
  void StartIpv6() {
    const HANDLE event = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    if (event == nullptr) {
      return;
    }
    ipv6_event_.assign(event);
    if (::NotifyUnicastIpAddressChange(AF_INET6, &SignalChange, event, FALSE, &ipv6_reports_) == NO_ERROR) {
      WaitForIpv6();
    }
  }

  static void WINAPI SignalChange(void* event, MIB_UNICASTIPADDRESS_ROW*, MIB_NOTIFICATION_TYPE) {
    ::SetEvent(event);
  }

  void WaitForIpv6() {
    ipv6_event_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && self->changed_) {
        self->Gather();
        self->WaitForIpv6();
      }
    });
  }

  void OnReport() {
    Gather();
    Wait();
  }

  void Gather() {
    act_.expires_at(gathering_.OnReport(std::chrono::steady_clock::now()));
    act_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && self->changed_) {
        self->gathering_.OnActed();
        self->changed_();
      }
    });
  }

  std::function<void()> changed_;
  OVERLAPPED overlapped_{};
  asio::windows::object_handle event_;
  HANDLE ipv6_reports_ = nullptr;
  asio::windows::object_handle ipv6_event_;
  ReportGathering gathering_;
  asio::steady_timer act_;
};

AddressWatch::AddressWatch(asio::io_context& io, std::function<void()> changed)
    : impl_(std::make_shared<Impl>(io, std::move(changed))) {
  impl_->Start();
}

AddressWatch::~AddressWatch() {
  impl_->Close();
}

}  // namespace slp
