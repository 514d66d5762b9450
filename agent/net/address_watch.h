// Tells when the addresses of this host's interfaces change: a network comes up after boot, a lease changes.
// Nothing is polled. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <functional>
#include <memory>

namespace slp {

class AddressWatch {
 public:
  /// `changed` is called from the loop, once for changes that come shortly after each other, a second after
  /// the first one at the latest. Where the system gives no such notice, never.
  AddressWatch(asio::io_context& io, std::function<void()> changed);
  AddressWatch(const AddressWatch&) = delete;
  AddressWatch& operator=(const AddressWatch&) = delete;
  ~AddressWatch();

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace slp
