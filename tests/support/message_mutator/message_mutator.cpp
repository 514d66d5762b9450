#include "support/message_mutator/message_mutator.h"

#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "wire/codec.h"

namespace slp::support {
namespace {

Message MakeMessage(Body body) {
  Message message;
  message.header.xid = 4711;
  message.body = std::move(body);
  return message;
}

std::vector<Bytes> Seeds() {
  const std::string url = "service:x:y://h:1/p";
  Message registration =
      MakeMessage(SrvReg{{3600, url, {}}, "service:x:y", "DEFAULT", "(a=1,2),(b=\\FF\\01),c", {}});
  registration.header.fresh = true;
  registration.header.extensions = {{kExtensionProcessId, {0, 0, 0, 17}}};
  Message update = registration;
  update.header.fresh = false;
  const Message messages[] = {
      MakeMessage(
          SrvRqst{"10.0.0.3,10.0.0.4", "service:x", "DEFAULT,TAMRO", "(&(a=1)(|(b=*x*)(!(c>=3))))", ""}),
      MakeMessage(SrvRqst{"", "service:service-agent", "", "(service-type=*)", ""}),
      MakeMessage(SrvRqst{"", "service:directory-agent", "DEFAULT", "", ""}),
      registration,
      update,
      MakeMessage(SrvDereg{"DEFAULT", {0, url, {}}, "a*,b"}),
      MakeMessage(SrvDereg{"DEFAULT", {0, url, {}}, ""}),
      MakeMessage(AttrRqst{"", url, "DEFAULT", "a,b*", ""}),
      MakeMessage(AttrRqst{"", "service:x", "DEFAULT", "", ""}),
      MakeMessage(SrvTypeRqst{"", "", "DEFAULT"}),
      MakeMessage(DaAdvert{Error::kOk, 1, "service:directory-agent://h", "DEFAULT", "(a=1)", "", {}}),
  };
  std::vector<Bytes> seeds;
  for (const Message& message : messages) {
    seeds.push_back(Encode(message).value());
  }
  return seeds;
}

void FixLength(Bytes& bytes) {
  if (bytes.size() > 4) {
    bytes[2] = static_cast<std::uint8_t>(bytes.size() >> 16U);
    bytes[3] = static_cast<std::uint8_t>(bytes.size() >> 8U);
    bytes[4] = static_cast<std::uint8_t>(bytes.size());
  }
}

}  // namespace

MessageMutator::MessageMutator(std::uint32_t seed) : random_(seed), seeds_(Seeds()) {}

Bytes MessageMutator::Next() {
  if (Below(4) == 0) {
    return Random();
  }
  Bytes bytes = seeds_[Below(seeds_.size())];
  for (std::size_t changes = Below(4); changes != 0; --changes) {
    Change(bytes);
  }
  if (Below(8) != 0) {
    FixLength(bytes);
  }
  return bytes;
}

Bytes MessageMutator::NextRegistration() {
  SrvReg request{{0, "service:x:y://h:1/" + std::to_string(Below(50)), {}},
                 "service:x:y",
                 "DEFAULT,TAMRO",
                 "(a=1,2),(b=\\FF\\01),c,(d=a\\2cb)",
                 {}};
  request.url.lifetime = static_cast<std::uint16_t>(random_());
  std::string* texts[] = {&request.url.url, &request.service_type, &request.attributes, &request.scopes};
  for (std::size_t changes = Below(4); changes != 0; --changes) {
    std::string& text = *texts[Below(std::size(texts))];
    text[Below(text.size())] = Telling();
  }
  Message message = MakeMessage(request);
  message.header.language = Below(8) == 0 ? "de" : "en";
  message.header.fresh = Below(4) != 0;
  message.header.extensions = {{kExtensionProcessId, {0, 0, 0, static_cast<std::uint8_t>(Below(5))}}};
  return Encode(message).value();
}

/// A character that means something in one of the grammars.
char MessageMutator::Telling() {
  static constexpr std::string_view kTelling = "(),\\!<=>~*;+_&|\x01 :/.ab1";
  return kTelling[Below(kTelling.size())];
}

Bytes MessageMutator::Random() {
  Bytes bytes(Below(80));
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random_());
  }
  if (bytes.size() > 1) {
    bytes[0] = 2;
    bytes[1] = static_cast<std::uint8_t>(Below(13));
  }
  FixLength(bytes);
  return bytes;
}

void MessageMutator::Change(Bytes& bytes) {
  const std::size_t place = Below(bytes.size());
  const auto position = bytes.begin() + static_cast<std::ptrdiff_t>(place);
  switch (Below(5)) {
    case 0:
      *position = static_cast<std::uint8_t>(random_());
      break;
    case 1:
      *position = static_cast<std::uint8_t>(Telling());
      break;
    case 2:
      bytes.insert(position, static_cast<std::uint8_t>(Telling()));
      break;
    case 3:
      if (bytes.size() > 1) {
        bytes.erase(position);
      }
      break;
    default:
      *position = static_cast<std::uint8_t>(*position ^ (1U << Below(8)));
      break;
  }
}

}  // namespace slp::support
