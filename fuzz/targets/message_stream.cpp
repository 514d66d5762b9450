// The bytes of a TCP connection, in pieces of any size. The first byte says how long the pieces are.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "slpd/server/message_framer.h"
#include "wire/codec.h"

namespace slp::fuzz {
namespace {

constexpr std::size_t kLimit = 4096;

void CheckStream(std::span<const std::uint8_t> stream, std::size_t piece) {
  MessageFramer framer(kLimit);
  std::size_t given_out = 0;
  for (std::size_t begin = 0; begin < stream.size(); begin += piece) {
    framer.Append(stream.subspan(begin, std::min(piece, stream.size() - begin)));
    std::span<const std::uint8_t> message;
    MessageFramer::State state = framer.Next(message);
    for (; state == MessageFramer::State::kMessage; state = framer.Next(message)) {
      Require(!message.empty() && message.size() <= kLimit, "a message is neither empty nor over the limit");
      Require(PeekHeader(message)->length == message.size(), "a message is as long as its header says");
      Require(
          std::equal(message.begin(), message.end(), stream.begin() + static_cast<std::ptrdiff_t>(given_out)),
          "messages come in the order of the stream");
      given_out += message.size();
    }
    if (state != MessageFramer::State::kIncomplete) {
      return;
    }
    Require(framer.pending() <= kLimit + piece, "what is held is bounded");
    framer.Release();
  }
  Require(given_out + framer.pending() == stream.size(), "nothing is lost");
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 0) {
    slp::fuzz::CheckStream({data + 1, size - 1}, std::size_t{data[0]} + 1);
  }
  return 0;
}
