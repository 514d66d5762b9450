#include "bench/end_to_end/round_trip.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"
#include "bench/support/placement.h"
#include "bench/support/table.h"

namespace bench {
namespace {

constexpr int kRounds = 10;
constexpr std::size_t kRunsEach = 200;
constexpr std::size_t kDatagram = 80;  // bytes; about the request and the reply
constexpr double kMostRoundTrips = 3;

struct Comparison {
  Latencies round_trips;
  Latencies beside_a_handle;
  Latencies alone;
};

void TimeSearches(Latencies& latencies, std::size_t size) {
  const Operation find_one = FindingOne(size);
  SlpSessionForEach session;
  for (std::size_t number = 0; number < kRunsEach; ++number) {
    latencies.Time([&] { find_one.run(session, number); });
  }
}

// By turns, so that all see the same machine.
Comparison CompareInPlace(const EchoProcess& echo, std::size_t size) {
  Comparison comparison;
  for (int round = 0; round < kRounds; ++round) {
    comparison.round_trips.Add(echo.TimeRoundTrips(kRunsEach, kDatagram));
    {
      const SlpSession keeps_the_properties;
      TimeSearches(comparison.beside_a_handle, size);
    }
    TimeSearches(comparison.alone, size);
  }
  return comparison;
}

double Times(const Latencies& searches, const Latencies& round_trips) {
  return searches.Percentile(50) / round_trips.Percentile(50);
}

void AppendPercentiles(Row& row, const Latencies& latencies) {
  row.push_back(Number(latencies.Percentile(50).count()));
  row.push_back(Number(latencies.Percentile(99).count()));
}

}  // namespace

// Echo and daemon have the same place: on the processor of those who ask, and on another one.
void CompareWithBareRoundTrip(const EchoProcess& echo, const BenchDaemon& daemon, std::size_t size) {
  const std::vector<int> processors = Processors();
  std::vector<Row> rows = {{"unicast, socket opened each time", "bare UDP round trip, p50 us", "p99 us",
                            "search that finds one, another handle open, p50 us", "p99 us", "times",
                            "search that finds one, no other handle open, p50 us", "p99 us", "times"}};
  double largest = 0;
  for (const int theirs : {processors.front(), processors.back()}) {
    const Placement placement(processors.front(), {echo.process_id(), daemon.process_id()}, theirs);
    const Comparison comparison = CompareInPlace(echo, size);
    Row row = {theirs == processors.front() ? "on one processor" : "on a processor each"};
    AppendPercentiles(row, comparison.round_trips);
    for (const Latencies* searches : {&comparison.beside_a_handle, &comparison.alone}) {
      const double times = Times(*searches, comparison.round_trips);
      AppendPercentiles(row, *searches);
      row.push_back(Number(times));
      largest = std::max(largest, times);
    }
    rows.push_back(row);
  }
  PrintTable(rows);
  PrintAtMost("a search that finds one over a bare UDP round trip, p50, the dearest of the four", largest,
              kMostRoundTrips, " times");
}

}  // namespace bench
