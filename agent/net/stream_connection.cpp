#include "net/stream_connection.h"

#include <asio/buffer.hpp>

namespace slp {
namespace {

StreamConnection::Status StatusOf(const asio::error_code& error) {
  if (error == asio::error::would_block || error == asio::error::try_again ||
      error == asio::error::in_progress) {
    return StreamConnection::Status::kBlocked;
  }
  return error ? StreamConnection::Status::kFailed : StreamConnection::Status::kDone;
}

}  // namespace

StreamConnection::Status StreamConnection::StartConnect(const asio::ip::tcp::endpoint& peer) {
  asio::error_code error = OpenUninherited(socket_, peer.protocol());
  if (!error) {
    socket_.non_blocking(true, error);
  }
  return error ? Status::kFailed : StatusOf(slp::StartConnect(socket_.native_handle(), peer));
}

StreamConnection::Status StreamConnection::FinishConnect() {
  return StatusOf(ConnectResult(socket_.native_handle()));
}

StreamConnection::Status StreamConnection::Write(std::span<const std::uint8_t>& bytes) {
  asio::error_code error;
  bytes = bytes.subspan(socket_.write_some(asio::buffer(bytes.data(), bytes.size()), error));
  return StatusOf(error);
}

StreamConnection::Status StreamConnection::Read(std::vector<std::uint8_t>& bytes, std::size_t most) {
  const std::size_t before = bytes.size();
  bytes.resize(before + most);
  asio::error_code error;
  const std::size_t moved = socket_.read_some(asio::buffer(bytes.data() + before, most), error);
  bytes.resize(before + (error ? 0 : moved));
  return StatusOf(error);
}

}  // namespace slp
