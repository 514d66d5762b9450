// How soon a search reports a result: measured from the moment at which a scripted agent hands its reply to
// the system.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <thread>
#include <variant>

#include "support/machine_delay.h"
#include "support/slp_peer/slp_peer.h"

namespace slp::support {

/// An agent that answers in the midst of the time that a search waits. Who asks it for directory agents hears
/// of none.
class PausingPeer {
 public:
  PausingPeer(const Body& answer, const PeerOptions& options)
      : peer_([this, answer](const PeerRequest& request) { return Answer(request, answer); }, options) {}

  /// When it first answered; any thread.
  std::chrono::steady_clock::time_point replied() const { return replied_; }

 private:
  static bool AsksForDirectoryAgents(const PeerRequest& request) {
    const auto* services = request.message ? std::get_if<SrvRqst>(&request.message.value().body) : nullptr;
    return services != nullptr && services->service_type == "service:directory-agent";
  }

  std::vector<PeerReply> Answer(const PeerRequest& request, const Body& answer) {
    if (AsksForDirectoryAgents(request)) {
      return request.transport == PeerRequest::Transport::kGroup
                 ? std::vector<PeerReply>()
                 : std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({}))}};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    const Bytes reply = EncodedReplyTo(request, answer);
    // A request that came again has been answered already.
    if (replied_.load() == std::chrono::steady_clock::time_point()) {
      replied_ = std::chrono::steady_clock::now();
    }
    return {{.bytes = reply}};
  }

  std::atomic<std::chrono::steady_clock::time_point> replied_{};
  SlpPeer peer_;
};

/// Runs `search` five times, each with a peer of its own; it returns when the first result was there. Only
/// what the machine takes from every thread is allowed beside the 100 milliseconds.
inline void ExpectResultsWithoutDelay(const Body& answer, const PeerOptions& options,
                                      const std::function<std::chrono::steady_clock::time_point()>& search) {
  using std::chrono::milliseconds;
  kelsd::support::MachineDelay delay;
  for (int round = 0; round < 5; ++round) {
    const PausingPeer peer(answer, options);
    const milliseconds delay_before = delay.Total();
    const auto reported = search();
    const milliseconds allowance = delay.Allowance(delay_before);
    ASSERT_NE(peer.replied(), std::chrono::steady_clock::time_point()) << "nobody has asked";
    const auto took = std::chrono::duration<double, std::milli>(reported - peer.replied()).count();
    std::cout << "first result after " << took << " ms, allowed for the machine " << allowance.count()
              << " ms\n";
    EXPECT_GT(took, 0) << "reported before there was a reply";
    EXPECT_LE(took, static_cast<double>((milliseconds(100) + allowance).count()));
  }
}

}  // namespace slp::support
