// A handle opened and closed for each request, on four threads at once: no descriptor stays open, no request
// goes without its answer.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <thread>

#include "agent/regression/loopback_daemon.h"
#include "slp.h"
#include "support/open_descriptors/open_descriptors.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using kelsd::support::OpenDescriptors;

constexpr int kThreads = 4;
constexpr int kRounds = 300;

/// What the system and its libraries keep open for themselves, once, is far less than one for each handle.
constexpr std::ptrdiff_t kKeptBySystem = 50;

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

/// How many of the rounds of each thread went as they should.
std::array<int, kThreads> OnFourThreads() {
  std::array<int, kThreads> good{};
  std::array<std::thread, kThreads> threads;
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&good, i] { good[i] = OpenAskClose("service:x://h/" + std::to_string(i)); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  return good;
}

class HandlesOnFourThreadsTest : public testing::Test {
 protected:
  HandlesOnFourThreadsTest() {
    SLPSetProperty("net.slp.port", std::to_string(daemon_.port()).c_str());
    SLPSetProperty("net.slp.interfaces", "127.0.0.1");
    SLPSetProperty("net.slp.watchRegistrationPID", "false");
    // Properties hold as long as a handle is open.
    EXPECT_EQ(SLPOpen("en", SLP_FALSE, &first_), SLP_OK);
  }
  ~HandlesOnFourThreadsTest() override { SLPClose(first_); }

  LoopbackDaemon daemon_;
  SLPHandle first_ = nullptr;
};

TEST_F(HandlesOnFourThreadsTest, EveryRequestIsAnswered) {
  EXPECT_EQ(OnFourThreads(), (std::array<int, kThreads>{kRounds, kRounds, kRounds, kRounds}));
  EXPECT_EQ(daemon_.Registered(), std::size_t{kThreads});
}

TEST_F(HandlesOnFourThreadsTest, NothingStaysOpen) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << "Wine does not count a process's handles";
  }
  const std::ptrdiff_t before = OpenDescriptors();
  ASSERT_GT(before, 0);
  OnFourThreads();
  EXPECT_LT(OpenDescriptors(), before + kKeptBySystem);
}

}  // namespace
}  // namespace slp
