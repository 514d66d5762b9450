// A daemon with a full registry is no amplifier: what a sender beyond its networks can make it send to
// somebody else over UDP is never more than what was sent. The figures stand in the output.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

constexpr int kServices = 20'000;

struct Traffic {
  std::size_t in = 0;
  std::size_t out = 0;
  double Ratio() const { return static_cast<double>(out) / static_cast<double>(in); }
};

/// Requests that have the longest answers, in their shortest forms, and some that are not well-formed.
std::vector<Bytes> Requests() {
  const Message messages[] = {
      MakeMessage(MakeSrvRqst("service:x")),
      MakeMessage(MakeSrvRqst("service:x", "(a=*)")),
      MakeMessage(MakeSrvRqst("service:service-agent", "", "")),
      MakeMessage(MakeSrvRqst("service:directory-agent", "", "")),
      MakeMessage(MakeAttrRqst("service:x")),
      MakeMessage(MakeAttrRqst("service:x:t1://h/1")),
      MakeMessage(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}),
      MakeMessage(SrvTypeRqst{{}, "", "DEFAULT"}),
      MakeMessage(MakeSrvReg("service:x:t1://h/1", "service:x:t1")),
      MakeMessage(SrvDereg{"DEFAULT", {0, "service:x:t1://h/1", {}}, ""}),
      MakeMessage(MakeSrvRqst("not a type", "(((")),
  };
  std::vector<Bytes> requests;
  for (const Message& message : messages) {
    requests.push_back(*Encode(message));
    Bytes cut = requests.back();
    cut.resize(14);
    cut[2] = 0;
    cut[3] = 0;
    cut[4] = 14;
    requests.push_back(cut);
  }
  return requests;
}

class AmplificationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < kServices; ++i) {
      const std::string type = "service:x:t" + std::to_string(i % 100);
      const std::string number = std::to_string(i);
      ASSERT_EQ(
          daemon_.registry.Register(MakeRegistration(type + "://h/" + number, type,
                                                     "(a=" + number + "),(b=" + std::string(100, 'b') + ')'),
                                    daemon_.now),
          Error::kOk);
    }
    daemon_.events.Take();
  }

  /// Each request once.
  Traffic Send(const RequestOrigin& origin, const std::string& name) {
    Traffic all;
    for (const Bytes& request : Requests()) {
      const std::optional<Bytes> reply = daemon_.handler.Handle(request, origin, daemon_.now);
      const Traffic one{request.size(), reply ? reply->size() : 0};
      worst_ = std::max(worst_, one.Ratio());
      all.in += one.in;
      all.out += one.out;
    }
    daemon_.events.Take();
    std::cout << name << ": " << all.in << " bytes in, " << all.out << " bytes out, ratio " << all.Ratio()
              << ", worst of a single request " << worst_ << std::endl;
    return all;
  }

  DaemonLogic daemon_;
  double worst_ = 0;
};

TEST_F(AmplificationTest, AStrangerGetsNoMoreThanItSentByAnyRequest) {
  EXPECT_LE(Send(kStranger, "beyond the own networks").Ratio(), 1.0);
  EXPECT_LE(worst_, 1.0);
}

TEST_F(AmplificationTest, AStrangersMulticastGetsNoMoreEither) {
  RequestOrigin origin = kStranger;
  origin.transport = Transport::kUdpMulticast;
  EXPECT_LE(Send(origin, "beyond the own networks, to the group").Ratio(), 1.0);
  EXPECT_LE(worst_, 1.0);
}

TEST_F(AmplificationTest, ANeighbourBeyondItsRateGetsNoMoreThanItSent) {
  AgentSettings settings = TestSettings();
  settings.reply_rate = 1;
  daemon_.handler.SetSettings(settings);
  Send(kNeighbour, "a neighbour, first of its rate");
  worst_ = 0;
  EXPECT_LE(Send(kNeighbour, "a neighbour beyond its rate").Ratio(), 1.0);
  EXPECT_LE(worst_, 1.0);
}

TEST_F(AmplificationTest, ANeighbourGetsNoDatagramBeyondTheMtu) {
  for (const Bytes& request : Requests()) {
    const std::optional<Bytes> reply = daemon_.handler.Handle(request, kNeighbour, daemon_.now);
    EXPECT_LE(reply ? reply->size() : 0, TestSettings().mtu);
  }
}

}  // namespace
}  // namespace slp
