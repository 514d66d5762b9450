// The daemon's request handling with a registry that holds services: a row of messages, each with its origin,
// and after them a look at the whole registry. An input is a row of steps: a byte that chooses the origin
// and, by its highest bit, the role of a directory agent, one with the seconds that pass before, two with the
// message's length, and the message.
#include "slpd/requests/request_handler.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "fuzz/no_events.h"
#include "wire/codec.h"
#include "wire/reader.h"

namespace slp::fuzz {
namespace {

constexpr std::size_t kMtu = 600;

const std::array<RequestOrigin, 6>& Origins() {
  static const std::array<RequestOrigin, 6> kOrigins{{
      {"127.0.0.1", true, true, Transport::kUdpUnicast, "127.0.0.1"},
      {"127.0.0.1", true, true, Transport::kTcp, "127.0.0.1"},
      {"10.0.0.7", false, true, Transport::kUdpMulticast, "10.0.0.1"},
      {"192.0.2.9", false, false, Transport::kUdpUnicast, "10.0.0.1"},
      {"192.0.2.9", false, false, Transport::kTcp, "10.0.0.1"},
      {"10.0.0.7", false, true, Transport::kUdpUnicast, "10.0.0.1"},
  }};
  return kOrigins;
}

AgentSettings Settings(bool directory_agent) {
  AgentSettings settings;
  settings.directory_agent = directory_agent;
  settings.boot_timestamp = directory_agent ? 1 : 0;
  settings.registrations_per_host = 2;
  settings.scopes = {"DEFAULT", "TAMRO"};
  settings.mtu = kMtu;
  settings.own_addresses = {"10.0.0.1", "127.0.0.1"};
  return settings;
}

void Populate(Registry& registry) {
  for (int i = 0; i < 16; ++i) {
    Registration registration;
    registration.service_type = i % 3 == 0 ? "service:x:y" : "service:x:http";
    registration.url = registration.service_type + "://h:1/" + std::to_string(i);
    registration.language = i % 5 == 4 ? "de" : "en";
    registration.scopes = {i % 4 == 3 ? "TAMRO" : "DEFAULT"};
    registration.attributes =
        "(a=" + std::to_string(i) + "),(b=x y,z),c,(d=\\FF\\0" + std::to_string(i % 10) + ")";
    registration.lifetime = static_cast<std::uint16_t>(60 * (i + 1));
    registration.process_id = i % 2 == 0 ? 17 : 0;
    Require(registry.Register(registration, Instant(0)) == Error::kOk, "a good registration is taken");
  }
}

void CheckReply(const Bytes& reply, std::span<const std::uint8_t> request, const RequestOrigin& origin) {
  Require(!reply.empty(), "a reply is not empty");
  Require(Decode(reply).ok(), "a reply decodes");
  Require(PeekHeader(reply)->xid == PeekHeader(request)->xid, "a reply has its request's transaction id");
  if (origin.transport != Transport::kTcp) {
    Require(reply.size() <= kMtu, "a datagram is no longer than the MTU");
    Require(origin.own_network || reply.size() <= request.size(), "a stranger gets no more than it sent");
  }
}

std::vector<Registration> Stored(const Registry& registry) {
  std::vector<Registration> stored;
  registry.ForEach([&stored](const RegistrationView& view) {
    Registration copy;
    copy.url = view.url;
    copy.service_type = view.service_type;
    copy.language = view.language;
    copy.attributes = view.attributes;
    stored.push_back(std::move(copy));
  });
  return stored;
}

std::set<std::string> UrlsOfType(const Registry& registry, const std::string& text, Instant now) {
  const auto type = ParseServiceType(text);
  Require(type.ok(), "a stored type can be read");
  std::set<std::string> urls;
  Effort effort(0);
  static_cast<void>(registry.FindServices({*type, {"DEFAULT", "TAMRO"}, "en", {}}, now, effort,
                                          [&urls](std::string_view url, std::uint16_t) {
                                            urls.emplace(url);
                                            return true;
                                          }));
  return urls;
}

/// Whatever is stored can be read, found and taken back, and nothing is left behind then.
void CheckRegistry(Registry& registry, Instant now) {
  const std::vector<Registration> stored = Stored(registry);
  Require(stored.size() == registry.size(), "the size is the number of registrations");
  std::map<std::string, std::set<std::string>> by_type;
  for (const Registration& registration : stored) {
    Require(AttributeList::Parse(registration.attributes).ok(), "stored attributes can be read");
    const auto found = registry.Find(registration.url, registration.language);
    Require(found && found->url == registration.url, "what is stored is found by its URL");
    const auto [urls, added] = by_type.try_emplace(registration.service_type);
    if (added) {
      urls->second = UrlsOfType(registry, registration.service_type, now);
    }
    Require(urls->second.count(registration.url) > 0, "what is stored is found by its type");
  }
  for (const Registration& registration : stored) {
    Effort effort(0);
    const Error error = registry.Deregister(registration.url, {"DEFAULT", "TAMRO"}, {}, effort);
    Require(error == Error::kOk || error == Error::kInvalidRegistration, "what is stored can be taken back");
  }
  Require(registry.size() == 0 && registry.bytes() == 0 && !registry.NextExpiry() &&
              registry.WatchedProcesses().empty(),
          "nothing is left behind");
}

void CheckSession(std::span<const std::uint8_t> input) {
  NoEvents events;
  Registry registry(events);
  Populate(registry);
  RequestHandler handler(registry, Settings(false), events,
                         [](std::uint32_t process_id) { return process_id != 9; });
  Instant now{0};
  Reader steps(input);
  while (steps.remaining() > 0 && !steps.failed()) {
    const std::uint8_t choice = steps.U8();
    const RequestOrigin& origin = Origins()[(choice & 0x7FU) % Origins().size()];
    const bool directory_agent = (choice & 0x80U) != 0;
    if (handler.settings().directory_agent != directory_agent) {
      handler.SetSettings(Settings(directory_agent));
    }
    now += Seconds(steps.U8());
    const std::size_t size = steps.U16();
    const auto request = steps.Take(std::min(size, steps.remaining()));
    registry.Expire(now);
    const std::size_t before = registry.size();
    const std::optional<Bytes> reply = handler.Handle(request, origin, now);
    const bool may_register = origin.own_host || (directory_agent && origin.own_network);
    Require(may_register || registry.size() == before, "only who may changes what is registered");
    Require(registry.UseOf(origin.address).registrations <= 2, "another host registers no more than it may");
    if (reply) {
      CheckReply(*reply, request, origin);
    }
  }
  CheckRegistry(registry, now);
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  slp::fuzz::CheckSession({data, size});
  return 0;
}
