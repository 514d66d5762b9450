// Measures what the library's classes add over the SLP C API: the same search both ways, by turns, in one
// process and against one daemon. Writes its table and target of docs/performance.md to the standard output.
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"
#include "bench/support/services.h"
#include "bench/support/table.h"
#include "kelsd/CKelSLPClient.h"

namespace bench {
namespace {

constexpr std::size_t kServices = 100;
constexpr int kRounds = 20;
constexpr std::size_t kRunsEach = 100;
constexpr double kLargestShare = 10;  // percent

void Require(const kelsd::SResult& result) {
  if (result.GetErrorCode() != kelsd::SResult::ERR_SUCCESS) {
    throw std::runtime_error(result.GetErrorDetail() + " " + result.GetErrorDebug());
  }
}

void FindThroughTheLibrary(std::size_t index) {
  std::vector<kelsd::SKelServiceSearchResult> found;
  Require(kelsd::CKelSLPClient::FindServices(found, kType, {}, OnlyThis(index), "127.0.0.1"));
  if (found.size() != 1) {
    throw std::runtime_error("the library found " + std::to_string(found.size()) + " services");
  }
}

void FindThroughTheApi(std::size_t index) {
  SlpSession session;
  if (session.Find(OnlyThis(index)) != 1) {
    throw std::runtime_error("the API did not find the service");
  }
}

void Measure() {
  BenchDaemon daemon;
  Require(kelsd::CKelSLP::Initialize());
  SlpSession session;
  for (std::size_t index = 0; index < kServices; ++index) {
    session.Register(index);
  }
  Latencies library;
  Latencies api;
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t run = 0; run < kRunsEach; ++run) {
      api.Time([run] { FindThroughTheApi(run % kServices); });
    }
    for (std::size_t run = 0; run < kRunsEach; ++run) {
      library.Time([run] { FindThroughTheLibrary(run % kServices); });
    }
  }
  PrintTable({{"search that finds one, unicast", "p50 us", "p99 us"},
              {"SLP C API", Number(api.Percentile(50).count()), Number(api.Percentile(99).count())},
              {"CKelSLPClient::FindServices", Number(library.Percentile(50).count()),
               Number(library.Percentile(99).count())}});
  const double share = (library.Percentile(50) - api.Percentile(50)) / library.Percentile(50) * 100;
  PrintTarget("the library's own share of such a search, p50", share, kLargestShare, " %");
}

}  // namespace
}  // namespace bench

int main() {
  try {
    bench::Measure();
  } catch (const std::exception& error) {
    std::cerr << "the measurement failed: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
