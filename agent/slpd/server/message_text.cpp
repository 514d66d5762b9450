#include "slpd/server/message_text.h"

#include <array>
#include <string_view>
#include <variant>

namespace slp {
namespace {

constexpr std::size_t kLongestText = 400;

// In the order of the alternatives of Body.
constexpr std::array<std::string_view, std::variant_size_v<Body>> kNames{
    "SrvRqst",  "SrvRply",  "SrvReg",      "SrvDereg",    "SrvAck",  "AttrRqst",
    "AttrRply", "DAAdvert", "SrvTypeRqst", "SrvTypeRply", "SAAdvert"};

std::string Quoted(std::string_view text) {
  return text.size() > kLongestText ? "\"" + std::string(text.substr(0, kLongestText)) + "...\""
                                    : "\"" + std::string(text) + "\"";
}

class Line {
 public:
  explicit Line(std::string_view start) : text_(start) {}

  Line& Text(std::string_view name, std::string_view value) { return Plain(name, Quoted(value)); }

  Line& TextIfAny(std::string_view name, std::string_view value) {
    return value.empty() ? *this : Text(name, value);
  }

  Line& Plain(std::string_view name, std::string_view value) {
    text_.append(" ").append(name).append("=").append(value);
    return *this;
  }

  Line& Number(std::string_view name, std::uint64_t value) { return Plain(name, std::to_string(value)); }

  Line& Code(Error error) { return Number("error", static_cast<std::uint16_t>(error)); }

  Line& Flag(std::string_view name, bool set) {
    if (set) {
      text_.append(" ").append(name);
    }
    return *this;
  }

  Line& Url(const UrlEntry& entry) { return Text("url", entry.url).Number("lifetime", entry.lifetime); }

  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

struct BodyText {
  Line& line;

  void operator()(const SrvRqst& body) const {
    line.Text("type", body.service_type)
        .Text("scopes", body.scopes)
        .TextIfAny("predicate", body.predicate)
        .TextIfAny("spi", body.spi)
        .TextIfAny("responders", body.previous_responders);
  }
  void operator()(const SrvRply& body) const {
    line.Code(body.error).Number("urls", body.urls.size());
    for (const UrlEntry& entry : body.urls) {
      line.Url(entry);
    }
  }
  void operator()(const SrvReg& body) const {
    line.Url(body.url)
        .Text("type", body.service_type)
        .Text("scopes", body.scopes)
        .TextIfAny("attributes", body.attributes);
  }
  void operator()(const SrvDereg& body) const {
    line.Text("url", body.url.url).Text("scopes", body.scopes).TextIfAny("tags", body.tags);
  }
  void operator()(const SrvAck& body) const { line.Code(body.error); }
  void operator()(const AttrRqst& body) const {
    line.Text("url", body.url)
        .Text("scopes", body.scopes)
        .TextIfAny("tags", body.tags)
        .TextIfAny("spi", body.spi)
        .TextIfAny("responders", body.previous_responders);
  }
  void operator()(const AttrRply& body) const { line.Code(body.error).Text("attributes", body.attributes); }
  void operator()(const DaAdvert& body) const {
    line.Code(body.error)
        .Number("boot", body.boot_timestamp)
        .Text("url", body.url)
        .Text("scopes", body.scopes)
        .TextIfAny("attributes", body.attributes)
        .TextIfAny("spi", body.spi);
  }
  void operator()(const SrvTypeRqst& body) const {
    if (body.naming_authority) {
      line.Text("authority", *body.naming_authority);
    }
    line.Text("scopes", body.scopes).TextIfAny("responders", body.previous_responders);
  }
  void operator()(const SrvTypeRply& body) const { line.Code(body.error).Text("types", body.types); }
  void operator()(const SaAdvert& body) const {
    line.Text("url", body.url).Text("scopes", body.scopes).TextIfAny("attributes", body.attributes);
  }
};

}  // namespace

std::string Describe(const Message& message) {
  Line line(kNames[message.body.index()]);
  line.Number("xid", message.header.xid)
      .Plain("lang", message.header.language)
      .Flag("overflow", message.header.overflow)
      .Flag("fresh", message.header.fresh)
      .Flag("multicast", message.header.request_multicast);
  std::visit(BodyText{line}, message.body);
  for (const Extension& extension : message.header.extensions) {
    line.Number("extension", extension.id);
  }
  return line.Take();
}

std::string Describe(const RegistrationView& registration) {
  Line line(registration.url);
  line.Text("type", registration.service_type)
      .Plain("lang", registration.language)
      .Text("scopes", registration.scopes)
      .Number("lifetime", registration.lifetime)
      .TextIfAny("attributes", registration.attributes);
  if (registration.process_id != 0) {
    line.Number("process", registration.process_id);
  }
  return line.Take();
}

std::string Describe(const RequestOrigin& origin) {
  const std::string_view transport = origin.transport == Transport::kTcp            ? " (TCP)"
                                     : origin.transport == Transport::kUdpMulticast ? " (multicast)"
                                                                                    : " (UDP)";
  return origin.address + std::string(transport);
}

}  // namespace slp
