// What the library does itself beside the calls of the SLP C API.
#include <benchmark/benchmark.h>

#include "bench/support/services.h"
#include "kelsd/CKelSLP.h"

namespace {

void ParseServiceUrl(benchmark::State& state) {
  const std::string url = bench::Url(1);
  for (auto _ : state) {
    kelsd::SKelServiceSearchResult result;
    benchmark::DoNotOptimize(kelsd::CKelSLP::ParseServiceURL(result, url));
  }
}
BENCHMARK(ParseServiceUrl);

}  // namespace
