// Random and damaged bytes through the handler: whatever comes, sizes are kept, registrations stay findable,
// and only a program of the own host changes anything.
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/slpd/daemon_logic.h"
#include "support/message_mutator/message_mutator.h"

namespace slp {
namespace {

using support::MessageMutator;

TEST(HostileRequestsTest, RepliesKeepTheirSizeAndDecode) {
  DaemonLogic daemon;
  MessageMutator mutator(20'261'120);
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
  MessageMutator mutator(7);
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
    const Error error = daemon.registry.Deregister(registration.url, {"DEFAULT", "TAMRO"}, {}, Unlimited());
    EXPECT_TRUE(error == Error::kOk || error == Error::kInvalidRegistration) << registration.url;
  }
  EXPECT_EQ(daemon.registry.size(), 0U);
  EXPECT_EQ(daemon.registry.NextExpiry(), std::nullopt);
  EXPECT_TRUE(daemon.registry.WatchedProcesses().empty());
}

}  // namespace
}  // namespace slp
