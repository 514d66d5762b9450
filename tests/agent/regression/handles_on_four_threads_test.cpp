// A handle opened and closed for each request, on four threads at once: no descriptor stays open, no request
// goes without its answer.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <thread>

#include "agent/regression/loopback_daemon.h"
#include "slp.h"

namespace slp {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 300;

/// How many of the rounds went as they should.
int OpenAskClose(const std::string& url) {
  int good = 0;
  for (int round = 0; round < kRounds; ++round) {
    SLPHandle handle = nullptr;
    if (SLPOpen("en", SLP_FALSE, &handle) != SLP_OK) {
      continue;
    }
    SLPError registered = SLP_INTERNAL_SYSTEM_ERROR;
    SLPReg(
        handle, url.c_str(), 60, nullptr, "(a=1)", SLP_TRUE,
        [](SLPHandle, SLPError error, void* cookie) { *static_cast<SLPError*>(cookie) = error; },
        &registered);
    int found = 0;
    SLPAssociateIP(handle, "127.0.0.1");
    SLPFindAttrs(
        handle, url.c_str(), "", "",
        [](SLPHandle, const char* attributes, SLPError error, void* cookie) {
          *static_cast<int*>(cookie) += error == SLP_OK && std::string(attributes) == "(a=1)" ? 1 : 0;
          return SLP_TRUE;
        },
        &found);
    SLPClose(handle);
    good += registered == SLP_OK && found == 1 ? 1 : 0;
  }
  return good;
}

TEST(HandlesOnFourThreadsTest, EveryRequestIsAnswered) {
  LoopbackDaemon daemon;
  SLPSetProperty("net.slp.port", std::to_string(daemon.port()).c_str());
  SLPSetProperty("net.slp.interfaces", "127.0.0.1");
  SLPSetProperty("net.slp.watchRegistrationPID", "false");
  // Properties hold as long as a handle is open.
  SLPHandle first = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &first), SLP_OK);
  std::array<int, kThreads> good{};
  {
    std::array<std::thread, kThreads> threads;
    for (std::size_t i = 0; i < threads.size(); ++i) {
      threads[i] = std::thread([&good, i] { good[i] = OpenAskClose("service:x://h/" + std::to_string(i)); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }
  SLPClose(first);
  EXPECT_EQ(good, (std::array<int, kThreads>{kRounds, kRounds, kRounds, kRounds}));
  EXPECT_EQ(daemon.Registered(), std::size_t{kThreads});
}

}  // namespace
}  // namespace slp
