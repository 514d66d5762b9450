#include "support/slp_peer/slp_peer.h"

#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <atomic>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

#include "net/addresses.h"
#include "net/listen_sockets.h"
#include "net/native_socket.h"
#include "support/free_port.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using asio::ip::tcp;
using asio::ip::udp;
using TimePoint = std::chrono::steady_clock::time_point;

/// How soon the loop sees that it shall stop, or that a delayed answer is due.
constexpr std::chrono::milliseconds kTick{5};

void Require(const asio::error_code& error, const char* what) {
  if (error) {
    throw std::runtime_error(std::string("scripted peer: ") + what + ": " + error.message());
  }
}

}  // namespace

class SlpPeer::Loop {
 public:
  Loop(Script script, const PeerOptions& options) : script_(std::move(script)) {
    Open(options);
    thread_ = std::thread([this] { Run(); });
  }

  ~Loop() {
    stop_ = true;
    thread_.join();
  }

  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  std::uint16_t port() const { return port_; }

  std::vector<PeerRequest> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }

 private:
  struct Connection {
    tcp::socket socket;
    Bytes received;
  };
  struct Delayed {
    TimePoint due;
    std::function<bool()> when = {};
    Bytes bytes = {};
    udp::endpoint to = {};
    udp::socket* from = nullptr;       // datagrams
    Connection* connection = nullptr;  // streams
    bool close = false;
    bool endless = false;
    std::size_t written = 0;
  };

  void Open(const PeerOptions& options) {
    const auto address = asio::ip::make_address(options.address);
    port_ = options.port != 0 ? options.port : FreePort(options.address);
    if (options.datagrams) {
      Require(OpenUnicastSocket(unicast_, {address, port_}, 1), "datagram socket");
    }
    if (options.group) {
      Require(OpenGroupSocket(group_, kMulticastGroup, port_, address.to_v4()), "group socket");
    }
    if (options.streams) {
      Require(OpenAcceptor(acceptor_, {address, port_}), "acceptor");
    }
    Require(OpenUnicastSocket(elsewhere_, {address, 0}, 1), "second datagram socket");
  }

  void Run() {
    while (!stop_) {
      Wait();
      ReceiveDatagrams(unicast_, PeerRequest::Transport::kUnicast);
      ReceiveDatagrams(group_, PeerRequest::Transport::kGroup);
      Accept();
      ReadStreams();
      SendDue();
    }
  }

  void Wait() {
    std::vector<AwaitedSocket> awaited;
    for (udp::socket* socket : {&unicast_, &group_}) {
      if (socket->is_open()) {
        awaited.push_back({.socket = socket->native_handle()});
      }
    }
    if (acceptor_.is_open()) {
      awaited.push_back({.socket = acceptor_.native_handle()});
    }
    for (Connection& connection : connections_) {
      awaited.push_back({.socket = connection.socket.native_handle()});
    }
    WaitUntilReady(awaited, kTick);
  }

  void ReceiveDatagrams(udp::socket& socket, PeerRequest::Transport transport) {
    while (socket.is_open()) {
      Bytes bytes(65536);
      udp::endpoint from;
      asio::error_code error;
      bytes.resize(socket.receive_from(asio::buffer(bytes), from, 0, error));
      if (error) {
        return;
      }
      for (const PeerReply& reply : Answer(transport, std::move(bytes))) {
        udp::socket& sender = reply.from_elsewhere || !unicast_.is_open() ? elsewhere_ : unicast_;
        delayed_.push_back({.due = std::chrono::steady_clock::now() + reply.delay,
                            .when = reply.when,
                            .bytes = reply.bytes,
                            .to = from,
                            .from = &sender});
      }
    }
  }

  void Accept() {
    while (acceptor_.is_open()) {
      tcp::socket accepted(context_);
      asio::error_code error;
      acceptor_.accept(accepted, error);
      if (error) {
        return;
      }
      accepted.non_blocking(true, error);
      connections_.push_back({std::move(accepted), {}});
    }
  }

  void ReadStreams() {
    for (auto connection = connections_.begin(); connection != connections_.end();) {
      const auto current = connection++;
      if (!ReadStream(*current)) {
        Drop(*current);
      }
    }
  }

  /// False when the connection is over.
  bool ReadStream(Connection& connection) {
    while (true) {
      std::array<std::uint8_t, 4096> piece;
      asio::error_code error;
      const std::size_t size = connection.socket.read_some(asio::buffer(piece), error);
      if (error) {
        return error == asio::error::would_block || error == asio::error::try_again;
      }
      connection.received.insert(connection.received.end(), piece.begin(), piece.begin() + size);
      while (const auto header = PeekHeader(connection.received)) {
        if (header->length == 0 || connection.received.size() < header->length) {
          break;
        }
        const auto end = connection.received.begin() + static_cast<std::ptrdiff_t>(header->length);
        Bytes request(connection.received.begin(), end);
        connection.received.erase(connection.received.begin(), end);
        AnswerStream(connection, std::move(request));
      }
    }
  }

  void AnswerStream(Connection& connection, Bytes request) {
    for (const PeerReply& reply : Answer(PeerRequest::Transport::kStream, std::move(request))) {
      const std::size_t chunk = reply.chunk == 0 ? std::max<std::size_t>(reply.bytes.size(), 1) : reply.chunk;
      TimePoint due = std::chrono::steady_clock::now() + reply.delay;
      for (std::size_t start = 0; start < reply.bytes.size(); start += chunk) {
        const auto begin = reply.bytes.begin() + static_cast<std::ptrdiff_t>(start);
        const auto size = static_cast<std::ptrdiff_t>(std::min(chunk, reply.bytes.size() - start));
        delayed_.push_back({.due = due,
                            .when = reply.when,
                            .bytes = Bytes(begin, begin + size),
                            .connection = &connection,
                            .endless = reply.endless});
        due += reply.chunk_pause;
      }
      if (reply.close) {
        delayed_.push_back({.due = due, .when = reply.when, .connection = &connection, .close = true});
      }
    }
  }

  std::vector<PeerReply> Answer(PeerRequest::Transport transport, Bytes bytes) {
    PeerRequest request{.transport = transport, .bytes = std::move(bytes)};
    request.message = Decode(request.bytes);
    request.arrival = std::chrono::steady_clock::now();
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    return script_(request);
  }

  void SendDue() {
    const TimePoint now = std::chrono::steady_clock::now();
    for (auto entry = delayed_.begin(); entry != delayed_.end();) {
      if (entry->due > now || (entry->when && !entry->when())) {
        ++entry;
        continue;
      }
      if (entry->close) {
        // Drop changes the list that is being walked; what else is due goes out at the next tick.
        Drop(*entry->connection);
        return;
      }
      if (entry->from != nullptr) {
        asio::error_code error;
        entry->from->send_to(asio::buffer(entry->bytes), entry->to, 0, error);
      } else if (!WriteSome(*entry)) {
        // What else goes to this connection comes behind it.
        if (!entry->endless) {
          return;
        }
        ++entry;
        continue;
      }
      entry = delayed_.erase(entry);
    }
  }

  /// False when something is left to be written.
  static bool WriteSome(Delayed& due) {
    asio::error_code error;
    due.written += due.connection->socket.write_some(asio::buffer(due.bytes) + due.written, error);
    if (error && error != asio::error::would_block && error != asio::error::try_again) {
      return true;
    }
    if (due.written < due.bytes.size()) {
      return false;
    }
    due.written = 0;
    return !due.endless;
  }

  void Drop(Connection& connection) {
    std::erase_if(delayed_, [&](const Delayed& entry) { return entry.connection == &connection; });
    connections_.remove_if([&](const Connection& entry) { return &entry == &connection; });
  }

  const Script script_;
  asio::io_context context_;
  std::uint16_t port_ = 0;
  udp::socket unicast_{context_};
  udp::socket group_{context_};
  udp::socket elsewhere_{context_};
  tcp::acceptor acceptor_{context_};
  std::list<Connection> connections_;
  std::deque<Delayed> delayed_;
  mutable std::mutex mutex_;
  std::vector<PeerRequest> requests_;  // guarded by mutex_
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

SlpPeer::SlpPeer(Script script, const PeerOptions& options)
    : loop_(std::make_unique<Loop>(std::move(script), options)) {}

SlpPeer::~SlpPeer() = default;

std::uint16_t SlpPeer::port() const {
  return loop_->port();
}

std::vector<PeerRequest> SlpPeer::requests() const {
  return loop_->requests();
}

Message ReplyTo(const PeerRequest& request, Body body) {
  Message reply;
  reply.header.xid = request.message.value().header.xid;
  reply.header.language = request.message.value().header.language;
  reply.body = std::move(body);
  return reply;
}

Bytes EncodedReplyTo(const PeerRequest& request, Body body) {
  return Encode(ReplyTo(request, std::move(body))).value();
}

SrvRply UrlReply(const std::vector<std::string>& urls) {
  SrvRply reply;
  for (const std::string& url : urls) {
    reply.urls.push_back({.lifetime = 60, .url = url, .authentication = {}});
  }
  return reply;
}

std::string PreviousResponders(const PeerRequest& request) {
  if (!request.message) {
    return {};
  }
  return std::visit(
      [](const auto& body) -> std::string {
        if constexpr (requires { body.previous_responders; }) {
          return body.previous_responders;
        } else {
          return {};
        }
      },
      request.message->body);
}

}  // namespace slp::support
