// Listeners with real sockets on a thread of their own, for tests of what a plan makes of them.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "agent/slpd_server/loop_thread.h"
#include "slpd/server/listeners.h"

namespace slp {

/// Answers each message with itself.
class Echoing : public MessageReceiver {
 public:
  std::chrono::milliseconds WaitBefore(std::span<const std::uint8_t>, const Sender&) override {
    return std::chrono::milliseconds(0);
  }
  std::optional<Bytes> OnMessage(std::span<const std::uint8_t> message, const Sender&) override {
    return Bytes(message.begin(), message.end());
  }
  void OnDropped(std::string_view, std::size_t, const Sender&) override {}
};

class ListeningTest : public testing::Test {
 protected:
  void TearDown() override {
    loop_.Do([this] { listeners_.reset(); });
  }

  /// What the listeners say to a plan; what was not possible stands in problems_.
  bool Apply(const ListenPlan& plan) {
    problems_.clear();
    return loop_.Do([&] {
      if (!listeners_) {
        listeners_ = std::make_unique<Listeners>(loop_.io(), receiver_, ConnectionLimits{});
      }
      return listeners_->Apply(plan, problems_);
    });
  }

  Echoing receiver_;
  LoopThread loop_;
  std::unique_ptr<Listeners> listeners_;
  std::vector<std::string> problems_;
};

}  // namespace slp
