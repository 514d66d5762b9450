#include "agent/slpd_server/client.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/multicast.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <chrono>

#include "net/interfaces.h"
#include "net/listen_sockets.h"
#include "wire/codec.h"

namespace slp {
namespace {

using asio::ip::udp;

std::optional<Bytes> Ask(asio::io_context& io, udp::socket& socket, const udp::endpoint& where,
                         const Bytes& request, udp::endpoint& replier, int limit_ms) {
  Bytes buffer(65536);
  std::optional<Bytes> reply;
  socket.send_to(asio::buffer(request), where);
  socket.async_receive_from(
      asio::buffer(buffer), replier, [&](const asio::error_code& error, std::size_t size) {
        if (!error) {
          reply = Bytes(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size));
        }
      });
  io.run_for(std::chrono::milliseconds(limit_ms));
  if (!io.stopped()) {
    socket.close();
    io.run();
  }
  return reply;
}

std::optional<Message> Exchange(const udp::endpoint& where, const Message& request) {
  auto bytes = Encode(request);
  if (!bytes) {
    ADD_FAILURE() << "the request can't be encoded";
    return std::nullopt;
  }
  const auto reply = AskUdp(where, *bytes);
  auto decoded = reply ? Decode(*reply) : Result<Message>(Error::kInternalError);
  if (!decoded) {
    ADD_FAILURE() << "no reply, or none that can be read";
    return std::nullopt;
  }
  return std::move(decoded).value();
}

}  // namespace

std::optional<Bytes> AskUdp(const udp::endpoint& where, const Bytes& request, int limit_ms) {
  asio::io_context io;
  udp::socket socket(io, where.address().is_v4() ? udp::endpoint(asio::ip::address_v4::loopback(), 0)
                                                 : udp::endpoint(asio::ip::address_v6::loopback(), 0));
  udp::endpoint replier;
  auto reply = Ask(io, socket, where, request, replier, limit_ms);
  EXPECT_TRUE(!reply || replier == where) << "answered by " << replier;
  return reply;
}

std::optional<Bytes> AskGroup(const udp::endpoint& group, const Bytes& request, udp::endpoint& replier,
                              int limit_ms) {
  asio::io_context io;
  udp::socket socket(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
  socket.set_option(asio::ip::multicast::outbound_interface(asio::ip::address_v4::loopback()));
  socket.set_option(asio::ip::multicast::hops(0));
  return Ask(io, socket, group, request, replier, limit_ms);
}

std::uint32_t LoopbackIndex() {
  const auto all = EnumerateInterfaces(true).value_or(std::vector<Interface>());
  const auto loopback = std::find_if(all.begin(), all.end(), [](const Interface& candidate) {
    return candidate.address == asio::ip::address_v6::loopback();
  });
  return loopback == all.end() ? 0 : loopback->index;
}

GroupListener::GroupListener(const udp::endpoint& group) {
  const auto error =
      OpenGroupSocket(socket_, group.address().to_v4(), group.port(), asio::ip::address_v4::loopback());
  EXPECT_FALSE(error) << error.message();
}

std::optional<Bytes> GroupListener::Receive(int limit_ms) {
  Bytes buffer(65536);
  std::optional<Bytes> received;
  udp::endpoint sender;
  socket_.async_receive_from(
      asio::buffer(buffer), sender, [&](const asio::error_code& error, std::size_t size) {
        if (!error) {
          received = Bytes(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size));
        }
      });
  io_.restart();
  io_.run_for(std::chrono::milliseconds(limit_ms));
  if (!io_.stopped()) {
    socket_.cancel();
    io_.run();
  }
  return received;
}

TcpClient::TcpClient(const asio::ip::tcp::endpoint& where, const std::string& source) {
  socket_.open(where.protocol());
  socket_.bind({asio::ip::make_address(source), 0});
  socket_.connect(where);
}

bool TcpClient::Send(const Bytes& bytes) {
  asio::error_code error;
  asio::write(socket_, asio::buffer(bytes), error);
  return !error;
}

std::optional<Bytes> TcpClient::Receive() {
  constexpr std::size_t kPeeked = 12;
  Bytes message(kPeeked);
  asio::error_code error;
  if (Read(message.data(), kPeeked, error) != kPeeked) {
    return std::nullopt;
  }
  const std::size_t length = PeekHeader(message)->length;
  message.resize(std::max(length, kPeeked));
  if (Read(message.data() + kPeeked, message.size() - kPeeked, error) != message.size() - kPeeked) {
    return std::nullopt;
  }
  return message;
}

bool TcpClient::IsClosed() {
  std::uint8_t byte = 0;
  asio::error_code error;
  return Read(&byte, 1, error) == 0 && (error == asio::error::eof || error == asio::error::connection_reset);
}

std::size_t TcpClient::Read(std::uint8_t* to, std::size_t size, asio::error_code& error) {
  std::size_t received = 0;
  asio::async_read(socket_, asio::buffer(to, size), [&](const asio::error_code& result, std::size_t count) {
    error = result;
    received = count;
  });
  io_.restart();
  io_.run_for(std::chrono::seconds(30));
  if (!io_.stopped()) {
    socket_.cancel();
    io_.run();
  }
  return received;
}

std::vector<std::string> FindServices(const udp::endpoint& where, const std::string& type) {
  Message request;
  request.header.xid = 11;
  request.body = SrvRqst{{}, type, "DEFAULT", {}, {}};
  const auto reply = Exchange(where, request);
  if (!reply) {
    return {};
  }
  const auto* const found = std::get_if<SrvRply>(&reply->body);
  if (found == nullptr || found->error != Error::kOk) {
    ADD_FAILURE() << "no SrvRply without error";
    return {};
  }
  std::vector<std::string> urls;
  for (const UrlEntry& entry : found->urls) {
    urls.push_back(entry.url);
  }
  std::sort(urls.begin(), urls.end());
  return urls;
}

Error Register(const udp::endpoint& where, const std::string& url, std::uint16_t lifetime,
               std::uint32_t process_id) {
  Message request;
  request.header.xid = 12;
  request.header.fresh = true;
  if (process_id != 0) {
    request.header.extensions.push_back(
        {kExtensionProcessId,
         {static_cast<std::uint8_t>(process_id >> 24U), static_cast<std::uint8_t>(process_id >> 16U),
          static_cast<std::uint8_t>(process_id >> 8U), static_cast<std::uint8_t>(process_id)}});
  }
  request.body = SrvReg{{lifetime, url, {}}, url.substr(0, url.find("://")), "DEFAULT", {}, {}};
  const auto reply = Exchange(where, request);
  const auto* const acknowledgement = reply ? std::get_if<SrvAck>(&reply->body) : nullptr;
  if (acknowledgement == nullptr) {
    ADD_FAILURE() << "no SrvAck";
    return Error::kInternalError;
  }
  return acknowledgement->error;
}

}  // namespace slp
