#include "integration/hostile/good_client.h"

#include <algorithm>
#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <stdexcept>

#include "wire/codec.h"

namespace slp {
namespace {

using asio::ip::tcp;
using asio::ip::udp;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kTry{1000};
constexpr int kTries = 3;
constexpr int kUdpRequestsBetweenTcp = 20;

const UrlEntry kService{0xFFFE, "service:good:tcp://h:1/here", {}};

Bytes Written(Body body, bool fresh = false) {
  Message message;
  message.header.xid = 0xBEEF;
  message.header.fresh = fresh;
  message.body = std::move(body);
  return Encode(message).value();
}

Bytes Search() {
  return Written(SrvRqst{"", "service:good", "DEFAULT", "(a=good)", ""});
}

bool IsTheService(const std::optional<Message>& reply) {
  const SrvRply* found = reply ? std::get_if<SrvRply>(&reply->body) : nullptr;
  return found != nullptr && found->error == Error::kOk && found->urls.size() == 1 &&
         found->urls[0].url == kService.url;
}

}  // namespace

std::optional<Message> AskOverUdp(const udp::endpoint& where, const Bytes& request, milliseconds limit) {
  asio::io_context io;
  udp::socket socket(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
  asio::error_code error;
  socket.send_to(asio::buffer(request), where, 0, error);
  Bytes buffer(65536);
  const auto end = steady_clock::now() + limit;
  while (!error && steady_clock::now() < end) {
    std::size_t received = 0;
    udp::endpoint sender;
    socket.async_receive_from(asio::buffer(buffer), sender,
                              [&](const asio::error_code& failure, std::size_t size) {
                                error = failure;
                                received = size;
                              });
    io.restart();
    io.run_until(end);
    if (!io.stopped()) {
      socket.close();
      io.run();
      return std::nullopt;
    }
    auto reply = Decode(std::span<const std::uint8_t>(buffer).first(received));
    if (reply && reply->header.xid == PeekHeader(request)->xid) {
      return std::move(reply).value();
    }
  }
  return std::nullopt;
}

GoodClient::GoodClient(std::uint16_t port) : port_(port) {
  const auto reply =
      AskOverUdp({asio::ip::address_v4::loopback(), port_},
                 Written(SrvReg{kService, "service:good:tcp", "DEFAULT", "(a=good)", {}}, true), kTry);
  if (!reply || reply->body != Body(SrvAck{})) {
    throw std::runtime_error("the good client's service was not taken");
  }
  thread_ = std::thread([this] { Run(); });
}

void GoodClient::Stop() {
  stop_ = true;
  if (thread_.joinable()) {
    thread_.join();
  }
  std::sort(latencies_.begin(), latencies_.end());
}

std::chrono::microseconds GoodClient::Latency(double share) const {
  if (latencies_.empty()) {
    return {};
  }
  return latencies_[static_cast<std::size_t>(share * static_cast<double>(latencies_.size() - 1))];
}

void GoodClient::Run() {
  for (int round = 1; !stop_; ++round) {
    const auto start = steady_clock::now();
    bool found = false;
    int tries = 0;
    for (; !found && tries < kTries; ++tries) {
      found = round % kUdpRequestsBetweenTcp == 0 ? FindByTcp() : FindByUdp();
    }
    if (found) {
      repeated_ += tries > 1 ? 1 : 0;
      latencies_.push_back(
          std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - start));
    } else {
      ++errors_;
    }
    // An application asks now and then, not in a loop.
    std::this_thread::sleep_for(milliseconds(1));
  }
}

bool GoodClient::FindByUdp() const {
  return IsTheService(AskOverUdp({asio::ip::address_v4::loopback(), port_}, Search(), kTry));
}

bool GoodClient::FindByTcp() const {
  asio::io_context io;
  tcp::socket socket(io);
  std::optional<Message> reply;
  std::array<std::uint8_t, 2048> buffer{};
  const Bytes request = Search();
  socket.async_connect({asio::ip::address_v4::loopback(), port_}, [&](const asio::error_code& failure) {
    asio::error_code error = failure;
    if (!error) {
      asio::write(socket, asio::buffer(request), error);
    }
    if (!error) {
      const auto whole = [&](const asio::error_code& read_error, std::size_t size) -> std::size_t {
        const auto header = PeekHeader(std::span<const std::uint8_t>(buffer).first(size));
        return read_error || (header && size >= header->length) ? 0 : buffer.size() - size;
      };
      asio::async_read(socket, asio::buffer(buffer), whole, [&](const asio::error_code&, std::size_t size) {
        if (auto decoded = Decode(std::span<const std::uint8_t>(buffer).first(size))) {
          reply = std::move(decoded).value();
        }
      });
    }
  });
  io.run_for(kTry);
  if (!io.stopped()) {
    asio::error_code ignored;
    socket.close(ignored);
    io.run();
  }
  return IsTheService(reply);
}

}  // namespace slp
