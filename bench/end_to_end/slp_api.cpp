// Measures a daemon through the SLP C API: each operation at growing numbers of registrations, on one thread
// and on four. Writes the tables and targets of docs/performance.md to the standard output.
#include <algorithm>
#include <exception>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "bench/end_to_end/arguments.h"
#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/expiry.h"
#include "bench/end_to_end/measurement.h"
#include "bench/end_to_end/memory.h"
#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/round_trip.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/echo.h"
#include "bench/support/table.h"

namespace bench {
namespace {

constexpr double kLargestGrowth = 2;
constexpr double kMostBytes = 700;

constexpr const char* kBesideAHandle = "find one, handle opened each time, another one open";
constexpr const char* kAlone = "find one, handle opened each time, no other one open";

// Floors of throughput and a ceiling of memory; they leave a usual machine room.
constexpr std::size_t kManyRegistrations = 20'000;
constexpr double kMostBytesWithMany = 1700;
const std::map<std::string, double> kLeastPerSecondWithMany = {
    {kRegister, 250}, {kFindOne, 260}, {kAttributesOfOne, 370}, {kDeregister, 600}};
constexpr std::size_t kFewRegistrations = 100;
constexpr double kLeastSearchesPerSecondWithFew = 16'000;

// The calling thread has no handle open, so that there is no other one where a search is to be alone.
void MeasureAt(std::size_t size, const BenchDaemon& daemon, std::vector<Measurement>& measurements) {
  for (const std::size_t threads : kThreads) {
    for (const Operation& operation : OperationsAt(size)) {
      measurements.push_back(Measure(operation, size, threads, OpenSlpSession, daemon));
    }
    Operation search = FindingOne(size);
    search.name = kAlone;
    measurements.push_back(Measure(search, size, threads, OpenSlpSessionForEach, daemon));
    const SlpSession keeps_the_properties;
    search.name = kBesideAHandle;
    measurements.push_back(Measure(search, size, threads, OpenSlpSessionForEach, daemon));
  }
}

void PrintMeasurements(const std::vector<Measurement>& measurements) {
  std::vector<Row> rows = {MeasurementHeadings()};
  std::transform(measurements.begin(), measurements.end(), std::back_inserter(rows), CellsOf);
  PrintTable(rows);
}

void PrintGrowth(const std::vector<Measurement>& measurements, std::size_t smallest, std::size_t largest) {
  for (const Operation& operation : OperationsAt(smallest)) {
    if (operation.growth_is_limited) {
      PrintAtMost(
          operation.name + ", p50 at " + std::to_string(largest) + " over p50 at " + std::to_string(smallest),
          OnOneThread(measurements, operation.name, largest).Median() /
              OnOneThread(measurements, operation.name, smallest).Median(),
          kLargestGrowth, " times");
    }
  }
}

void PrintDelivery(std::size_t size) {
  PrintAtLeast("services that one search delivered of " + std::to_string(size) + " of one type",
               static_cast<double>(SlpSession().Find("")),
               static_cast<double>(std::min(size, kMostDelivered)), "");
}

void PrintOrientation(const std::vector<Measurement>& measurements,
                      const std::map<std::size_t, double>& bytes_each) {
  if (bytes_each.count(kManyRegistrations) != 0) {
    const std::string at = " at " + std::to_string(kManyRegistrations);
    for (const auto& [operation, per_second] : kLeastPerSecondWithMany) {
      PrintAtLeast(operation + at + ", one thread",
                   OnOneThread(measurements, operation, kManyRegistrations).workload.PerSecond(), per_second,
                   " a second");
    }
    PrintAtMost("resident memory a registration" + at, bytes_each.at(kManyRegistrations), kMostBytesWithMany,
                " bytes");
  }
  if (bytes_each.count(kFewRegistrations) != 0) {
    for (const char* search : {kBesideAHandle, kAlone}) {
      PrintAtLeast(std::string(search) + ", at " + std::to_string(kFewRegistrations) + ", one thread",
                   OnOneThread(measurements, search, kFewRegistrations).workload.PerSecond(),
                   kLeastSearchesPerSecondWithFew, " a second");
    }
  }
}

void MeasureAll(const Arguments& arguments) {
  const std::vector<std::size_t>& sizes = arguments.sizes;
  const EchoProcess echo;
  const std::map<std::size_t, double> bytes_each =
      MeasureMemory(sizes, BenchDaemon(arguments.running_daemon));
  PrintAtMost("resident memory a registration at " + std::to_string(sizes.back()),
              bytes_each.at(sizes.back()), kMostBytes, " bytes");

  const BenchDaemon daemon(arguments.running_daemon);
  std::size_t registered = 0;
  std::vector<Measurement> measurements;
  for (const std::size_t size : sizes) {
    Fill(OpenSlpSession, registered, size);
    registered = size;
    if (size == sizes.front()) {
      CompareWithBareRoundTrip(echo, daemon, size);
    }
    if (size == kManyRegistrations || size == sizes.back()) {
      PrintDelivery(size);
    }
    MeasureAt(size, daemon, measurements);
  }
  PrintMeasurements(measurements);
  PrintFailures(measurements);
  PrintGrowth(measurements, sizes.front(), sizes.back());
  PrintOrientation(measurements, bytes_each);
  MeasureExpiry();
  if (arguments.running_daemon) {  // it goes on, and is left as it was
    Empty(OpenSlpSession, registered);
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  try {
    bench::MeasureAll(bench::ReadArguments(argc, argv, "Measures an SLP daemon through the SLP C API.",
                                           bench::Daemons::kOwnOrRunning));
  } catch (const std::exception& error) {
    std::cerr << "the measurement failed: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
