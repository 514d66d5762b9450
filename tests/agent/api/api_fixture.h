// What the tests of the C API share: a handle whose traffic stays on the loopback interface, and searches
// that return all they reported as one value.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <ostream>
#include <string>
#include <vector>

#include "slp.h"
#include "support/free_port.h"
#include "support/machine_delay.h"
#include "support/slp_peer/slp_peer.h"
#include "support/wait_until.h"

namespace slp::support {

/// What a search returned and each call of its callback: "CODE TEXT", for services "CODE URL LIFETIME".
struct SearchOutcome {
  SLPError result = SLP_OK;
  std::vector<std::string> calls;
  bool operator==(const SearchOutcome&) const = default;
};

inline void PrintTo(const SearchOutcome& outcome, std::ostream* out) {
  *out << outcome.result;
  for (const std::string& call : outcome.calls) {
    *out << " | " << call;
  }
}

/// The last call of every search that its callback lets go on.
inline const std::string kLastCall = "1 (null)";
inline const std::string kLastServiceCall = "1 (null) 0";

class ApiTest : public testing::Test {
 protected:
  // Long enough for the peers of a busy machine: no agent that answers is asked twice, and two rounds without
  // a reply would end a search. Whoever answers does so in the first round. Tests of silence set what they
  // need.
  ApiTest() {
    Set("net.slp.port", std::to_string(port_));
    Set("net.slp.interfaces", "127.0.0.1");
    Set("net.slp.multicastTimeouts", "400,50,50,50,50,50,50,50");
    Set("net.slp.multicastMaximumWait", "5000");
    Set("net.slp.unicastTimeouts", "1000,1000,1000,1000,1000");
    Set("net.slp.unicastMaximumWait", "5000");
    Set("net.slp.watchRegistrationPID", "false");
    Set("net.slp.activeDADetection", "false");
    Set("net.slp.passiveDADetection", "false");
    EXPECT_EQ(SLPOpen("en", SLP_FALSE, &handle_), SLP_OK);
  }

  ~ApiTest() override { SLPClose(handle_); }

  static void Set(const char* key, const std::string& value) { SLPSetProperty(key, value.c_str()); }

  PeerOptions AtPort(const std::string& address = "127.0.0.1") const {
    PeerOptions options;
    options.address = address;
    options.port = port_;
    return options;
  }

  /// `results`: after so many the callback wants no more; negative: never.
  SearchOutcome FindServices(const std::string& type, const char* scopes = "", const char* filter = "",
                             int results = -1) {
    SearchCookie cookie{{}, results};
    cookie.outcome.result = SLPFindSrvs(handle_, type.c_str(), scopes, filter, ServiceCallback, &cookie);
    return cookie.outcome;
  }

  SearchOutcome FindAttributes(const std::string& url_or_type, const char* scopes = "", const char* tags = "",
                               int results = -1) {
    SearchCookie cookie{{}, results};
    cookie.outcome.result = SLPFindAttrs(handle_, url_or_type.c_str(), scopes, tags, ListCallback, &cookie);
    return cookie.outcome;
  }

  SearchOutcome FindTypes(const char* authority, const char* scopes = "") {
    SearchCookie cookie{{}, -1};
    cookie.outcome.result = SLPFindSrvTypes(handle_, authority, scopes, ListCallback, &cookie);
    return cookie.outcome;
  }

  /// What `attempt` returns, which has requests share a time that a machine that stands still takes away from
  /// the last one. Then it is made anew, some times at most, at a port of which nothing is known yet.
  template <typename Attempt>
  auto WhereTheMachineGoesOn(Attempt attempt) {
    for (int left = 9;; --left) {
      kelsd::support::MachineDelay delay;
      auto outcome = attempt();
      if (left == 0 || delay.Total() < std::chrono::milliseconds(200)) {
        return outcome;
      }
      port_ = FreePort();
      Set("net.slp.port", std::to_string(port_));
    }
  }

  void AskOnly(const std::string& address) { EXPECT_EQ(SLPAssociateIP(handle_, address.c_str()), SLP_OK); }

  std::uint16_t port_ = FreePort();
  SLPHandle handle_ = nullptr;

 private:
  struct SearchCookie {
    SearchOutcome outcome;
    int left;
  };

  static SLPBoolean Record(SearchCookie& cookie, std::string call) {
    cookie.outcome.calls.push_back(std::move(call));
    return --cookie.left == 0 ? SLP_FALSE : SLP_TRUE;
  }

  static std::string Text(SLPError error, const char* text) {
    return std::to_string(error) + ' ' + (text == nullptr ? "(null)" : text);
  }

  static SLPBoolean SLPCALLBACK ServiceCallback(SLPHandle, const char* url, unsigned short lifetime,
                                                SLPError error, void* cookie) {
    return Record(*static_cast<SearchCookie*>(cookie), Text(error, url) + ' ' + std::to_string(lifetime));
  }

  static SLPBoolean SLPCALLBACK ListCallback(SLPHandle, const char* list, SLPError error, void* cookie) {
    return Record(*static_cast<SearchCookie*>(cookie), Text(error, list));
  }
};

/// Milliseconds that `action` takes.
template <typename Action>
long long Milliseconds(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
      .count();
}

/// Expects that `action` takes no less than `least` milliseconds, and no more than `most` and what is
/// allowed for the machine, which is returned.
template <typename Action>
std::chrono::milliseconds ExpectTakes(long long least, long long most, Action action) {
  kelsd::support::MachineDelay delay;
  const long long took = Milliseconds(action);
  const std::chrono::milliseconds allowance = delay.Allowance();
  EXPECT_GE(took, least);
  EXPECT_LE(took, most + allowance.count()) << "allowed for the machine " << allowance.count() << " ms";
  return allowance;
}

/// What `peer` has got, once there are so many: it may hear the last request only after the search has ended.
/// If fewer come there are fewer.
inline std::vector<PeerRequest> RequestsTo(const SlpPeer& peer, std::size_t count) {
  kelsd::support::WaitUntil([&] { return peer.requests().size() >= count; }, std::chrono::seconds(5));
  return peer.requests();
}

}  // namespace slp::support
