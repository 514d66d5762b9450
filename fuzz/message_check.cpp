#include "fuzz/message_check.h"

#include <iterator>

#include "fuzz/fuzz_target.h"
#include "wire/codec.h"
#include "wire/wire_constants.h"

namespace slp::fuzz {

void CheckMessage(const std::uint8_t* data, std::size_t size, std::initializer_list<FunctionId> family) {
  Bytes bytes(data, data + size);
  if (bytes.size() >= kPeekedHeaderSize) {
    bytes[0] = kProtocolVersion;
    bytes[1] = static_cast<std::uint8_t>(*std::next(family.begin(), bytes[1] % family.size()));
    if (bytes[kLengthPosition] == 0) {
      bytes[kLengthPosition] = static_cast<std::uint8_t>(bytes.size() >> 16U);
      bytes[kLengthPosition + 1] = static_cast<std::uint8_t>(bytes.size() >> 8U);
      bytes[kLengthPosition + 2] = static_cast<std::uint8_t>(bytes.size());
    }
  }

  const Result<Message> message = Decode(bytes);
  if (!message) {
    return Require(message.error() != Error::kOk, "what does not decode has an error");
  }
  const Result<Bytes> written = Encode(*message);
  Require(written.ok(), "what decodes can be written");
  const Result<Message> again = Decode(*written);
  Require(again.ok() && *again == *message, "what was written decodes to the same message");

  const std::size_t half = written->size() / 2;
  const Result<Bytes> cut = EncodeWithin(*message, half);
  Require(!cut || (cut->size() <= half && Decode(*cut)), "what was cut keeps its limit and decodes");
}

}  // namespace slp::fuzz
