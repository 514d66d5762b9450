// Reading of whole messages; field by field: field_reader.h and layout.h.
#include <algorithm>
#include <utility>

#include "wire/codec.h"
#include "wire/field_reader.h"
#include "wire/layout.h"
#include "wire/reader.h"
#include "wire/wire_constants.h"

namespace slp {
namespace {

// The alternative of Body that a function id stands for; their order is that of FunctionId.
template <std::size_t... kIndex>
Body EmptyBody(std::size_t index, std::index_sequence<kIndex...>) {
  Body body;
  static_cast<void>(((kIndex == index && (body.emplace<kIndex>(), true)) || ...));
  return body;
}

std::optional<Body> EmptyBody(std::uint8_t function) {
  if (function == 0 || function > std::variant_size_v<Body>) {
    return std::nullopt;
  }
  return EmptyBody(function - 1U, std::make_index_sequence<std::variant_size_v<Body>>());
}

// The kinds that RFC 2608 section 6.1 lets be cut to fit a datagram.
bool IsReply(FunctionId function) {
  switch (function) {
    case FunctionId::kSrvRply:
    case FunctionId::kAttrRply:
    case FunctionId::kDaAdvert:
    case FunctionId::kSrvTypeRply:
    case FunctionId::kSaAdvert:
      return true;
    default:
      return false;
  }
}

// Ids that a receiver must know to go on (RFC 2608 section 9.1).
bool IsMandatory(std::uint16_t id) {
  return id >= 0x4000 && id <= 0x7FFF;
}

// Walks the extension chain from `offset`, an offset from the message's beginning, to its end. `least` is the
// first place where the extension may stand, `length` the message's length by its header: in a cut reply that
// is more than there are bytes, and the extensions behind the cut are left out. Offsets only ever grow, so
// that a chain cannot run in a circle.
Error ReadExtensions(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t least,
                     std::size_t length, std::vector<Extension>& extensions) {
  while (offset != 0) {
    if (offset < least || offset + kExtensionHeadSize > length) {
      return Error::kParseError;
    }
    if (offset + kExtensionHeadSize > bytes.size()) {
      return Error::kOk;
    }
    Reader reader(bytes.subspan(offset));
    Extension extension;
    extension.id = reader.U16();
    const std::size_t next = reader.U24();
    least = offset + kExtensionHeadSize;
    const std::size_t end = next != 0 ? next : length;
    if (end < least || end > length) {
      return Error::kParseError;
    }
    if (IsMandatory(extension.id) && extension.id != kExtensionProcessId) {
      return Error::kOptionNotUnderstood;
    }
    extension.payload = reader.Block(end - least);
    if (!reader.failed()) {
      extensions.push_back(std::move(extension));
    }
    offset = next;
  }
  return Error::kOk;
}

}  // namespace

std::optional<HeaderPeek> PeekHeader(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kPeekedHeaderSize) {
    return std::nullopt;
  }
  Reader reader(bytes);
  HeaderPeek peek;
  peek.version = reader.U8();
  peek.function = reader.U8();
  peek.length = reader.U24();
  // Reserved flag bits are the sender's duty to clear; a later use of them must not make its messages
  // unreadable.
  const std::uint16_t flags = reader.U16();
  peek.overflow = (flags & kFlagOverflow) != 0;
  peek.fresh = (flags & kFlagFresh) != 0;
  peek.request_multicast = (flags & kFlagRequestMulticast) != 0;
  peek.extension_offset = reader.U24();
  peek.xid = reader.U16();
  return peek;
}

// 1. Header: version, function, length against the bytes at hand, language tag.
// 2. Extensions, which stand behind the body: a mandatory one that nobody knows may change what the body
// means, so
//    they come first.
// 3. Body: everything between header and first extension, no byte less or more.
Result<Message> Decode(std::span<const std::uint8_t> bytes) {
  const std::optional<HeaderPeek> peek = PeekHeader(bytes);
  if (!peek) {
    return Error::kParseError;
  }
  if (peek->version != kProtocolVersion) {
    return Error::kVersionNotSupported;
  }
  std::optional<Body> body = EmptyBody(peek->function);
  if (!body) {
    return Error::kMessageNotSupported;
  }
  const bool cut = peek->overflow && IsReply(static_cast<FunctionId>(peek->function));
  if (cut ? peek->length < bytes.size() : peek->length != bytes.size()) {
    return Error::kParseError;
  }
  Reader reader(bytes);
  reader.Take(kPeekedHeaderSize);
  Message message;
  message.header.overflow = peek->overflow;
  message.header.fresh = peek->fresh;
  message.header.request_multicast = peek->request_multicast;
  message.header.xid = peek->xid;
  message.header.language = reader.Text(reader.U16());
  if (reader.failed()) {
    return Error::kParseError;
  }

  const std::size_t body_begin = bytes.size() - reader.remaining();
  const Error error =
      ReadExtensions(bytes, peek->extension_offset, body_begin, peek->length, message.header.extensions);
  if (error != Error::kOk) {
    return error;
  }

  const std::size_t body_end =
      peek->extension_offset != 0 ? std::min(peek->extension_offset, bytes.size()) : bytes.size();
  FieldReader fields(bytes.subspan(body_begin, body_end - body_begin), cut);
  std::visit([&fields](auto& content) { Layout(fields, content); }, *body);
  if (!fields.Complete()) {
    return Error::kParseError;
  }
  message.body = std::move(*body);
  return message;
}

}  // namespace slp
