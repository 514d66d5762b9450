#include "net/address_watch.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>
#include <cerrno>
#include <chrono>

#include "net/report_gathering.h"

#ifdef __linux__
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#endif

namespace slp {
namespace {

// A socket on which the kernel reports changes; -1 when there is none.
int OpenReports() {
#ifdef __linux__
  const int descriptor = ::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE);
  if (descriptor < 0) {
    return -1;
  }
  sockaddr_nl local{};
  local.nl_family = AF_NETLINK;
  local.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
  sockaddr general{};
  static_assert(sizeof local <= sizeof general);
  std::copy_n(reinterpret_cast<const char*>(&local), sizeof local, reinterpret_cast<char*>(&general));
  if (::bind(descriptor, &general, sizeof local) != 0) {
    ::close(descriptor);
    return -1;
  }
  return descriptor;
#else
  return -1;
#endif
}

}  // namespace

class AddressWatch::Impl : public std::enable_shared_from_this<AddressWatch::Impl> {
 public:
  Impl(asio::io_context& io, std::function<void()> changed)
      : changed_(std::move(changed)), reports_(io), act_(io) {}

  void Start() {
    const int descriptor = OpenReports();
    if (descriptor >= 0) {
      reports_.assign(descriptor);
      Wait();
    }
  }

  void Close() {
    changed_ = nullptr;
    asio::error_code ignored;
    reports_.close(ignored);
    act_.cancel();
  }

 private:
  void Wait() {
    reports_.async_wait(asio::posix::stream_descriptor::wait_read,
                        [self = shared_from_this()](const asio::error_code& error) {
                          if (!error && self->changed_) {
                            self->OnReport();
                          }
                        });
  }

  // What the reports say does not matter, nor that some may have been lost: they are read to get rid of them.
  void OnReport() {
    std::array<char, 8192> report{};
    ssize_t size = 0;
    do {
      size = ::recv(reports_.native_handle(), report.data(), report.size(), 0);
    } while (size > 0 || (size < 0 && (errno == EINTR || errno == ENOBUFS)));
    act_.expires_at(gathering_.OnReport(std::chrono::steady_clock::now()));
    act_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && self->changed_) {
        self->gathering_.OnActed();
        self->changed_();
      }
    });
    if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      Wait();
    }
  }

  std::function<void()> changed_;
  asio::posix::stream_descriptor reports_;
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
