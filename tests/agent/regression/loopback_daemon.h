// The daemon on a thread of its own, on the loopback interface and a free port, with its default settings.
// The members may be used by any thread.
#pragma once

#include <gtest/gtest.h>

#include <asio/ip/address_v4.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <chrono>
#include <memory>
#include <sstream>
#include <string>

#include "agent/slpd_server/loop_thread.h"
#include "slpd/server/configuration.h"
#include "slpd/server/log.h"
#include "slpd/server/server.h"
#include "support/free_port.h"

namespace slp {

class LoopbackDaemon {
 public:
  LoopbackDaemon() {
    ConfigurationSources sources;
    sources.files = {};
    sources.overrides = {{"net.slp.interfaces", "127.0.0.1"}, {"net.slp.port", std::to_string(port_)}};
    std::vector<std::string> problems;
    const Configuration configuration = ReadConfiguration(sources, problems);
    std::string reason;
    EXPECT_TRUE(loop_.Do([&] {
      server_ = std::make_unique<Server>(loop_.io(), log_, [] {
        return std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now().time_since_epoch());
      });
      return server_->Start(configuration, reason);
    })) << reason;
  }
  LoopbackDaemon(const LoopbackDaemon&) = delete;
  LoopbackDaemon& operator=(const LoopbackDaemon&) = delete;
  ~LoopbackDaemon() {
    loop_.Do([this] { server_.reset(); });
  }

  std::uint16_t port() const { return port_; }
  asio::ip::udp::endpoint udp() const { return {asio::ip::address_v4::loopback(), port_}; }
  asio::ip::tcp::endpoint tcp() const { return {asio::ip::address_v4::loopback(), port_}; }

  std::size_t Registered() {
    return loop_.Do([this] { return server_->registry().size(); });
  }

 private:
  const std::uint16_t port_ = support::FreePort();
  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  LoopThread loop_;
  std::unique_ptr<Server> server_;
};

}  // namespace slp
