// Measures what the library's classes add over the SLP C API: the same operations both ways, in one process
// and against one daemon. Writes its tables and target of docs/performance.md to the standard output.
#include <algorithm>
#include <exception>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "bench/end_to_end/arguments.h"
#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/library_session.h"
#include "bench/end_to_end/measurement.h"
#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"
#include "bench/support/table.h"
#include "kelsd/CKelSLPService.h"

namespace bench {
namespace {

constexpr int kRounds = 20;
constexpr std::size_t kRunsEach = 100;
constexpr double kLargestShare = 10;  // percent

/// Ends the renewal of services: the daemon ends before this process, and nothing may start it anew.
class RenewalUntilTheEnd {
 public:
  RenewalUntilTheEnd() = default;
  ~RenewalUntilTheEnd() {
    kelsd::CKelSLPService::SetRegistrationCheckInterval(std::numeric_limits<int>::max());
  }
  RenewalUntilTheEnd(const RenewalUntilTheEnd&) = delete;
  RenewalUntilTheEnd& operator=(const RenewalUntilTheEnd&) = delete;
};

// By turns, so that both see the same machine.
void CompareSearches(std::size_t size) {
  const Operation find_one = FindingOne(size);
  SlpSessionForEach api_session;
  LibrarySession library_session;
  Latencies library;
  Latencies api;
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t run = 0; run < kRunsEach; ++run) {
      api.Time([&] { find_one.run(api_session, run); });
    }
    for (std::size_t run = 0; run < kRunsEach; ++run) {
      library.Time([&] { find_one.run(library_session, run); });
    }
  }
  PrintTable({{"search that finds one, unicast", "p50 us", "p99 us"},
              {"SLP C API", Number(api.Percentile(50).count()), Number(api.Percentile(99).count())},
              {"CKelSLPClient::FindServices", Number(library.Percentile(50).count()),
               Number(library.Percentile(99).count())}});
  const double share = (library.Percentile(50) - api.Percentile(50)) / library.Percentile(50) * 100;
  PrintAtMost("the library's own share of such a search, p50", share, kLargestShare, " %");
}

std::vector<Measurement> MeasureBy(const OpenSession& open, std::size_t size, std::size_t threads,
                                   const BenchDaemon& daemon) {
  std::vector<Measurement> measurements;
  for (const Operation& operation : OperationsAt(size)) {
    if (operation.library_has_it) {
      measurements.push_back(Measure(operation, size, threads, open, daemon));
    }
  }
  return measurements;
}

// Registering through the library with a scope named, as the service types of the family do.
Measurement MeasureWithScope(std::size_t size, std::size_t threads, const BenchDaemon& daemon) {
  const auto open = [] { return std::make_unique<LibrarySession>(std::vector<std::string>{"DEFAULT"}); };
  Operation registering = Registering(size);
  registering.name = "register, scope named";
  Measurement measurement = Measure(registering, size, threads, open, daemon);
  Run(Deregistering(size), threads, open);
  return measurement;
}

Row CellsBeside(const Measurement& library, const Measurement& kept, const Measurement& each) {
  Row cells = CellsOf(library);
  cells.push_back(Number(kept.Median()));
  cells.push_back(Number(each.Median()));
  cells.push_back(Number(library.Median() - each.Median()));
  return cells;
}

void MeasureAt(std::size_t size, const BenchDaemon& daemon, std::vector<Measurement>& measurements,
               std::vector<Row>& rows) {
  for (const std::size_t threads : kThreads) {
    const std::vector<Measurement> kept = MeasureBy(OpenSlpSession, size, threads, daemon);
    const std::vector<Measurement> each = MeasureBy(OpenSlpSessionForEach, size, threads, daemon);
    const std::vector<Measurement> library = MeasureBy(OpenLibrarySession, size, threads, daemon);
    const Measurement with_scope = MeasureWithScope(size, threads, daemon);
    for (std::size_t number = 0; number < library.size(); ++number) {
      rows.push_back(CellsBeside(library[number], kept[number], each[number]));
    }
    rows.push_back(CellsBeside(with_scope, kept.front(), each.front()));
    for (const std::vector<Measurement>& of_one : {kept, each, library, {with_scope}}) {
      measurements.insert(measurements.end(), of_one.begin(), of_one.end());
    }
  }
}

void MeasureAll(const std::vector<std::size_t>& sizes) {
  const BenchDaemon daemon;
  Require(kelsd::CKelSLP::Initialize());
  const RenewalUntilTheEnd renewal;
  const SlpSession keeps_the_properties;  // as the handle does that the library keeps
  std::size_t registered = 0;
  std::vector<Measurement> measurements;
  Row headings = MeasurementHeadings();
  headings.insert(headings.end(), {"C API, handle kept, p50 us", "C API, handle opened each time, p50 us",
                                   "classes beyond the latter, p50 us"});
  std::vector<Row> rows = {headings};
  for (const std::size_t size : sizes) {
    Fill(OpenLibrarySession, registered, size);
    registered = size;
    if (size == sizes.front()) {
      CompareSearches(size);
    }
    MeasureAt(size, daemon, measurements, rows);
  }
  PrintTable(rows);
  PrintFailures(measurements);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  try {
    bench::MeasureAll(bench::ReadArguments(argc, argv,
                                           "Measures what the library's classes add over the SLP C API.",
                                           bench::Daemons::kOwn)
                          .sizes);
  } catch (const std::exception& error) {
    std::cerr << "the measurement failed: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
