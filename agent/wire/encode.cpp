// Writing of whole messages; field by field: field_writer.h and layout.h.
#include <algorithm>
#include <utility>

#include "wire/codec.h"
#include "wire/field_writer.h"
#include "wire/layout.h"
#include "wire/wire_constants.h"
#include "wire/writer.h"

namespace slp {
namespace {

// Length and extension offset are filled in when they are known.
void WriteHeader(Writer& writer, const Message& message) {
  const Header& header = message.header;
  const unsigned flags = (header.overflow ? kFlagOverflow : 0U) | (header.fresh ? kFlagFresh : 0U) |
                         (header.request_multicast ? kFlagRequestMulticast : 0U);
  writer.U8(kProtocolVersion);
  writer.U8(static_cast<std::uint8_t>(message.function()));
  writer.U24(0);
  writer.U16(flags);
  writer.U24(0);
  writer.U16(header.xid);
  writer.U16(header.language.size());
  writer.Text(header.language);
}

// RFC 2608 section 9.1: each extension names the offset of the next one, the last one 0.
void WriteExtensions(Writer& writer, const std::vector<Extension>& extensions) {
  if (extensions.empty()) {
    return;
  }
  writer.PatchU24(kExtensionOffsetPosition, writer.size());
  for (const Extension& extension : extensions) {
    const bool last = &extension == &extensions.back();
    writer.U16(extension.id);
    writer.U24(last ? 0 : writer.size() - 2 + kExtensionHeadSize + extension.payload.size());
    writer.Block(extension.payload);
  }
}

std::size_t EncodedSize(const UrlEntry& entry) {
  Writer writer;
  FieldWriter(writer).Url(entry);
  return writer.size();
}

// What is left of a reply that does not fit: its kind and its error. An advertisement keeps the boot time as
// well, of which 0 would announce the agent's end.
std::optional<Body> CutBody(const Body& body) {
  struct Cut {
    std::optional<Body> operator()(const SrvRply& reply) const { return SrvRply{reply.error, {}}; }
    std::optional<Body> operator()(const SrvAck& reply) const { return reply; }
    std::optional<Body> operator()(const AttrRply& reply) const { return AttrRply{reply.error, {}, {}}; }
    std::optional<Body> operator()(const SrvTypeRply& reply) const { return SrvTypeRply{reply.error, {}}; }
    std::optional<Body> operator()(const SaAdvert&) const { return SaAdvert{}; }
    std::optional<Body> operator()(const DaAdvert& reply) const {
      return DaAdvert{.error = reply.error,
                      .boot_timestamp = reply.boot_timestamp,
                      .url = {},
                      .scopes = {},
                      .attributes = {},
                      .spi = {},
                      .authentication = {}};
    }
    std::optional<Body> operator()(const SrvRqst&) const { return std::nullopt; }
    std::optional<Body> operator()(const SrvReg&) const { return std::nullopt; }
    std::optional<Body> operator()(const SrvDereg&) const { return std::nullopt; }
    std::optional<Body> operator()(const AttrRqst&) const { return std::nullopt; }
    std::optional<Body> operator()(const SrvTypeRqst&) const { return std::nullopt; }
  };
  return std::visit(Cut(), body);
}

}  // namespace

Result<Bytes> Encode(const Message& message) {
  Writer writer;
  WriteHeader(writer, message);
  FieldWriter fields(writer);
  std::visit([&fields](const auto& content) { Layout(fields, content); }, message.body);
  WriteExtensions(writer, message.header.extensions);
  writer.PatchU24(kLengthPosition, writer.size());
  if (writer.failed()) {
    return Error::kInternalError;
  }
  return writer.Release();
}

Result<Bytes> EncodeBare(const Message& message, std::size_t limit) {
  std::optional<Body> cut_body = CutBody(message.body);
  if (!cut_body) {
    return Error::kInternalError;
  }
  Message bare{message.header, std::move(*cut_body)};
  bare.header.overflow = true;
  bare.header.extensions.clear();
  Result<Bytes> bytes = Encode(bare);
  return bytes && bytes->size() <= limit ? std::move(bytes) : Error::kInternalError;
}

// 1. The whole message, when it fits.
// 2. Otherwise its head: header with the overflow flag, error, no extensions.
// 3. To the head of a service reply as many URL entries as there is room for, in their order.
Result<Bytes> EncodeWithin(const Message& message, std::size_t limit) {
  Result<Bytes> whole = Encode(message);
  if (whole && whole->size() <= limit) {
    return whole;
  }

  std::optional<Body> cut_body = CutBody(message.body);
  if (!cut_body) {
    return Error::kInternalError;
  }
  Message cut{message.header, std::move(*cut_body)};
  cut.header.overflow = true;
  cut.header.extensions.clear();
  Result<Bytes> head = Encode(cut);
  if (!head || head->size() > limit) {
    return Error::kInternalError;
  }
  const SrvRply* reply = std::get_if<SrvRply>(&message.body);
  if (reply == nullptr) {
    return head;
  }

  std::vector<UrlEntry>& kept = std::get<SrvRply>(cut.body).urls;
  std::size_t room = std::min(limit, kMaximumMessageLength) - head->size();
  for (const UrlEntry& entry : reply->urls) {
    const std::size_t size = EncodedSize(entry);
    if (size > room || kept.size() == kMaximumUrlEntries) {
      break;
    }
    room -= size;
    kept.push_back(entry);
  }
  return Encode(cut);
}

}  // namespace slp
