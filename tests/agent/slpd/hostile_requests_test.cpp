// Random and damaged bytes through the handler: whatever comes, sizes are kept, registrations stay findable,
// and only a program of the own host changes anything.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

std::vector<Bytes> Seeds() {
  SrvRqst responders = MakeSrvRqst("service:x", "(&(a=1)(|(b=*x*)(!(c>=3))))", "DEFAULT,TAMRO");
  responders.previous_responders = "10.0.0.3,10.0.0.4";
  Message registration =
      MakeMessage(MakeSrvReg("service:x:y://h:1/p", "service:x:y", "(a=1,2),(b=\\FF\\01),c"));
  registration.header.fresh = true;
  registration.header.extensions = {{kExtensionProcessId, {0, 0, 0, 17}}};
  Message update = registration;
  update.header.fresh = false;
  const Message messages[] = {
      MakeMessage(responders),
      MakeMessage(MakeSrvRqst("service:service-agent", "(service-type=*)", "")),
      MakeMessage(MakeSrvRqst("service:directory-agent")),
      registration,
      update,
      MakeMessage(SrvDereg{"DEFAULT", {0, "service:x:y://h:1/p", {}}, "a*,b"}),
      MakeMessage(SrvDereg{"DEFAULT", {0, "service:x:y://h:1/p", {}}, ""}),
      MakeMessage(MakeAttrRqst("service:x:y://h:1/p", "a,b*")),
      MakeMessage(MakeAttrRqst("service:x")),
      MakeMessage(SrvTypeRqst{{}, "", "DEFAULT"}),
      MakeMessage(DaAdvert{Error::kOk, 1, "service:directory-agent://h", "DEFAULT", "(a=1)", "", {}}),
  };
  std::vector<Bytes> seeds;
  for (const Message& message : messages) {
    Result<Bytes> bytes = Encode(message);
    EXPECT_TRUE(bytes);
    seeds.push_back(*bytes);
  }
  return seeds;
}

void FixLength(Bytes& bytes) {
  if (bytes.size() > 4) {
    bytes[2] = static_cast<std::uint8_t>(bytes.size() >> 16);
    bytes[3] = static_cast<std::uint8_t>(bytes.size() >> 8);
    bytes[4] = static_cast<std::uint8_t>(bytes.size());
  }
}

class Mutator {
 public:
  explicit Mutator(std::uint32_t seed) : random_(seed), seeds_(Seeds()) {}

  Bytes Next() {
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

  /// A well-formed registration with a few characters of its texts changed.
  Bytes NextRegistration() {
    SrvReg request = MakeSrvReg("service:x:y://h:1/" + std::to_string(Below(50)), "service:x:y",
                                "(a=1,2),(b=\\FF\\01),c,(d=a\\2cb)", "DEFAULT,TAMRO");
    request.url.lifetime = static_cast<std::uint16_t>(random_());
    std::string* texts[] = {&request.url.url, &request.service_type, &request.attributes, &request.scopes};
    for (std::size_t changes = Below(4); changes != 0; --changes) {
      std::string& text = *texts[Below(std::size(texts))];
      text[Below(text.size())] = Telling();
    }
    Message message = MakeMessage(request, Below(8) == 0 ? "de" : "en");
    message.header.fresh = Below(4) != 0;
    message.header.extensions = {{kExtensionProcessId, {0, 0, 0, static_cast<std::uint8_t>(Below(5))}}};
    return *Encode(message);
  }

  std::size_t Below(std::size_t bound) { return random_() % bound; }

 private:
  /// A character that means something in one of the grammars.
  char Telling() {
    static constexpr std::string_view kTelling = "(),\\!<=>~*;+_&|\x01 :/.ab1";
    return kTelling[Below(kTelling.size())];
  }

  Bytes Random() {
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

  void Change(Bytes& bytes) {
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

  std::mt19937 random_;
  std::vector<Bytes> seeds_;
};

TEST(HostileRequestsTest, RepliesKeepTheirSizeAndDecode) {
  DaemonLogic daemon;
  Mutator mutator(20'261'120);
  const RequestOrigin origins[] = {kOwnHost, kNeighbour, kGroupMember, kStranger, kStreamPeer};
  int replies = 0;
  for (int i = 0; i < 200'000; ++i) {
    const Bytes request = mutator.Next();
    const RequestOrigin& origin = origins[mutator.Below(std::size(origins))];
    const std::size_t before = daemon.registry.size();
    const std::optional<Bytes> reply = daemon.handler.Handle(request, origin, daemon.now);
    if (!origin.own_host) {
      ASSERT_EQ(daemon.registry.size(), before);
    }
    if (reply) {
      ++replies;
      ASSERT_TRUE(Decode(*reply)) << ::testing::PrintToString(request);
      ASSERT_EQ((*reply)[10], request[10]);
      ASSERT_EQ((*reply)[11], request[11]);
      if (origin.transport != Transport::kTcp) {
        ASSERT_LE(reply->size(), 1400U);
      }
      if (!origin.own_network && origin.transport != Transport::kTcp) {
        ASSERT_LE(reply->size(), request.size()) << ::testing::PrintToString(request);
      }
    }
    daemon.events.Take();
    if (i % 64 == 0) {
      daemon.now += Seconds(1);
    }
  }
  EXPECT_GT(replies, 10'000);
}

TEST(HostileRequestsTest, WhateverIsStoredCanBeReadFoundAndTakenBack) {
  DaemonLogic daemon;
  Mutator mutator(7);
  int stored = 0;
  for (int i = 0; i < 30'000; ++i) {
    daemon.handler.Handle(i % 2 == 0 ? mutator.Next() : mutator.NextRegistration(), kOwnHost, daemon.now);
  }
  std::vector<Registration> registrations;
  daemon.registry.ForEach([&](const RegistrationView& view) {
    ++stored;
    EXPECT_TRUE(AttributeList::Parse(view.attributes)) << view.attributes;
    EXPECT_EQ(daemon.registry.Find(view.url, view.language)->url, view.url);
    Registration copy;
    copy.url = view.url;
    copy.service_type = view.service_type;
    registrations.push_back(copy);
  });
  EXPECT_GT(stored, 100);
  for (const Registration& registration : registrations) {
    const ServiceQuery query = MakeQuery(registration.service_type, "", {"DEFAULT", "TAMRO"});
    const std::vector<std::string> urls = FindUrls(daemon.registry, query, daemon.now);
    EXPECT_NE(std::find(urls.begin(), urls.end(), registration.url), urls.end()) << registration.url;
  }
  for (const Registration& registration : registrations) {
    const Error error = daemon.registry.Deregister(registration.url, {"DEFAULT", "TAMRO"}, {});
    EXPECT_TRUE(error == Error::kOk || error == Error::kInvalidRegistration) << registration.url;
  }
  EXPECT_EQ(daemon.registry.size(), 0U);
  EXPECT_EQ(daemon.registry.NextExpiry(), std::nullopt);
  EXPECT_TRUE(daemon.registry.WatchedProcesses().empty());
}

}  // namespace
}  // namespace slp
