// A million damaged datagrams and ten thousand broken streams against the real daemon (fewer in a short run):
// it lives, holds its memory, and serves a good client throughout. The figures stand in the output.
#include <gtest/gtest.h>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "integration/hostile/good_client.h"
#include "integration/hostile/hostile_streams.h"
#include "support/message_mutator/message_mutator.h"
#include "support/slpd_process/slpd_process.h"
#include "wire/codec.h"

namespace slp {
namespace {

using asio::ip::udp;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct Amount {
  int datagrams;
  int streams;
};

Amount HowMuch() {
  if (std::getenv("KELSD_SOAK") != nullptr) {
    return {1'000'000, 10'000};
  }
  const bool long_form = KELSD_HAS_LONG_FORM && std::getenv("KELSD_LONG_TESTS") != nullptr;
  return long_form ? Amount{100'000, 1'000} : Amount{20'000, 200};
}

/// Datagrams that are sent before the daemon must have come to the last of them, so that it handles each
/// instead of the system dropping them.
constexpr int kDatagramsBetweenProbes = 50;
constexpr std::size_t kMegabyte = 1024;  // in kilobytes
constexpr std::size_t kMostGrowth = 64 * kMegabyte;
constexpr double kMostErrors = 0.001;

/// Kilobytes of memory that the process has resident.
std::size_t ResidentMemory(int process_id) {
  std::ifstream status("/proc/" + std::to_string(process_id) + "/status");
  std::string word;
  while (status >> word) {
    if (word == "VmRSS:") {
      std::size_t kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  return 0;
}

Bytes Probe() {
  Message probe;
  probe.header.xid = 0xCAFE;
  probe.body = SrvTypeRqst{"", "none", "DEFAULT"};
  return Encode(probe).value();
}

/// Of a run that takes minutes, how far it has come.
void TellProgress(int sent, int count, steady_clock::time_point start) {
  if (count >= 200'000 && sent > 0 && sent % (count / 10) == 0) {
    std::cout << sent << " of " << count << " damaged datagrams after "
              << std::chrono::duration_cast<std::chrono::seconds>(steady_clock::now() - start).count() << " s"
              << std::endl;
  }
}

/// How many of the probes were answered.
int SendDatagrams(std::uint16_t port, int count, int& probes) {
  asio::io_context io;
  udp::socket socket(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
  const udp::endpoint daemon(asio::ip::address_v4::loopback(), port);
  support::MessageMutator mutator(20'261'121);
  int answered = 0;
  const auto start = steady_clock::now();
  for (int sent = 0; sent < count; ++sent) {
    const Bytes bytes = mutator.Below(8) == 0 ? mutator.NextRegistration() : mutator.Next();
    asio::error_code ignored;
    socket.send_to(asio::buffer(bytes), daemon, 0, ignored);
    TellProgress(sent, count, start);
    if (sent % kDatagramsBetweenProbes == 0) {
      ++probes;
      answered += AskOverUdp(daemon, Probe(), milliseconds(5000)) ? 1 : 0;
    }
  }
  return answered;
}

TEST(HostileInputTest, TheDaemonLivesAndServesAGoodClientThroughout) {
  const Amount amount = HowMuch();
  support::SlpdProcess slpd;
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  GoodClient good(slpd.port());
  const std::size_t before = ResidentMemory(slpd.process_id());
  const auto start = steady_clock::now();

  HostileStreams streams(slpd.port(), 4711);
  std::thread stream_thread([&] {
    for (int i = 0; i < amount.streams; ++i) {
      streams.MakeOne();
    }
  });
  int probes = 0;
  const int answered = SendDatagrams(slpd.port(), amount.datagrams, probes);
  stream_thread.join();

  const double seconds = std::chrono::duration<double>(steady_clock::now() - start).count();
  const std::size_t after = ResidentMemory(slpd.process_id());
  good.Stop();
  const double error_rate = static_cast<double>(good.errors()) / static_cast<double>(good.requests());
  std::cout << amount.datagrams << " damaged datagrams and " << amount.streams << " broken streams ("
            << streams.refused() << " not taken) in " << seconds << " s\n"
            << "good client: " << good.requests() << " requests, error rate " << error_rate << ", "
            << good.repeated() << " answered at a second or third try, latency p50 "
            << good.Latency(0.5).count() << " us, p99 " << good.Latency(0.99).count() << " us, worst "
            << good.Latency(1).count() << " us\n"
            << "resident memory: " << before << " kB before, " << after << " kB after" << std::endl;

  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  EXPECT_EQ(answered, probes);
  EXPECT_GT(good.requests(), 100U);
  EXPECT_LE(error_rate, kMostErrors);
  EXPECT_LE(good.repeated(), good.requests() / 20);
  if (KELSD_MEMORY_IS_COMPARED) {
    EXPECT_LT(after, before + kMostGrowth);
  }
  EXPECT_EQ(slpd.Stop(), 0) << slpd.Log();
}

}  // namespace
}  // namespace slp
