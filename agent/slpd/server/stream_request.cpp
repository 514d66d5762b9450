#include "slpd/server/stream_request.h"

#include <asio/buffer.hpp>
#include <asio/write.hpp>
#include <utility>

#include "net/native_socket.h"

namespace slp {
namespace {

/// An acknowledgment or an advertisement; nothing longer is asked for.
constexpr std::size_t kLongestReply = 65536;

}  // namespace

std::shared_ptr<StreamRequest> StreamRequest::Start(asio::io_context& io,
                                                    const asio::ip::tcp::endpoint& local,
                                                    const asio::ip::tcp::endpoint& peer, Bytes message,
                                                    std::chrono::milliseconds limit, Reply reply) {
  std::shared_ptr<StreamRequest> request(new StreamRequest(io, std::move(message), std::move(reply)));
  request->deadline_.expires_after(limit);
  request->deadline_.async_wait([request](const asio::error_code& error) {
    if (!error) {
      request->Close();
    }
  });
  request->Connect(local, peer);
  return request;
}

StreamRequest::StreamRequest(asio::io_context& io, Bytes message, Reply reply)
    : socket_(io),
      deadline_(io),
      message_(std::move(message)),
      reply_(std::move(reply)),
      framer_(kLongestReply) {}

void StreamRequest::Close() {
  reply_ = nullptr;
  deadline_.cancel();
  asio::error_code ignored;
  socket_.close(ignored);
}

void StreamRequest::Connect(const asio::ip::tcp::endpoint& local, const asio::ip::tcp::endpoint& peer) {
  asio::error_code error = OpenUninherited(socket_, peer.protocol());
  if (!error) {
    socket_.bind(local, error);
  }
  if (error) {
    return Close();
  }
  socket_.async_connect(peer, [self = shared_from_this()](const asio::error_code& failure) {
    failure ? self->Close() : self->Write();
  });
}

void StreamRequest::Write() {
  asio::async_write(socket_, asio::buffer(message_),
                    [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                      error ? self->Close() : self->Read();
                    });
}

void StreamRequest::Read() {
  socket_.async_read_some(asio::buffer(chunk_),
                          [self = shared_from_this()](const asio::error_code& error, std::size_t size) {
                            if (error || !self->reply_) {
                              return self->Close();
                            }
                            self->framer_.Append(std::span<const std::uint8_t>(self->chunk_).first(size));
                            std::span<const std::uint8_t> message;
                            const MessageFramer::State state = self->framer_.Next(message);
                            if (state == MessageFramer::State::kIncomplete) {
                              return self->Read();
                            }
                            const Reply reply = std::exchange(self->reply_, nullptr);
                            if (state == MessageFramer::State::kMessage) {
                              reply(message);
                            }
                            self->Close();
                          });
}

}  // namespace slp
