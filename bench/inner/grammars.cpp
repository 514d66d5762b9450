// The agent's grammars: what each search and each registration parses.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/support/services.h"
#include "text/attributes.h"
#include "text/predicate.h"
#include "text/service_url.h"

namespace {

void ParseAttributeList(benchmark::State& state) {
  const std::string text = bench::Attributes(1);
  for (auto _ : state) {
    benchmark::DoNotOptimize(slp::AttributeList::Parse(text));
  }
}
BENCHMARK(ParseAttributeList);

void ParsePredicate(benchmark::State& state) {
  const std::string text = "(&(x-version>=4)(|(x-server-name=srv*)(!(x-server-ns-port=8081))))";
  for (auto _ : state) {
    benchmark::DoNotOptimize(slp::Predicate::Parse(text));
  }
}
BENCHMARK(ParsePredicate);

/// More than the comparison takes.
constexpr std::size_t kEffort = 1'000'000;

void MatchPredicate(benchmark::State& state) {
  const auto attributes = slp::AttributeList::Parse(bench::Attributes(1));
  const auto predicate =
      slp::Predicate::Parse("(&(x-version>=4)(|(x-server-name=srv*)(!(x-server-ns-port=8081))))");
  for (auto _ : state) {
    slp::Effort effort(kEffort);
    benchmark::DoNotOptimize(predicate.value().Matches(attributes.value(), effort));
  }
}
BENCHMARK(MatchPredicate);

}  // namespace
