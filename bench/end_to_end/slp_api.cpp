// Measures a daemon through the SLP C API: each operation at growing numbers of registrations, on one thread
// and on four. Writes the tables and targets of docs/performance.md to the standard output.
#include <algorithm>
#include <array>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/measured_sizes.h"
#include "bench/end_to_end/workload.h"
#include "bench/support/echo.h"
#include "bench/support/placement.h"
#include "bench/support/services.h"
#include "bench/support/table.h"

namespace bench {
namespace {

constexpr std::size_t kRuns = 2000;             // of what an index serves
constexpr std::size_t kScans = 20;              // of what looks at every registration, or delivers it
constexpr std::size_t kMostDelivered = 20'000;  // what one search is asked to deliver
constexpr std::array<std::size_t, 2> kThreads{1, 4};
constexpr double kLargestGrowth = 2;
constexpr double kMostBytes = 700;
constexpr double kMostRoundTrips = 3;

void Require(bool holds, const std::string& what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

// Spreads the runs over all registrations, in an order that is none.
std::size_t Somewhere(std::size_t number, std::size_t size) {
  return number * 7919 % size;
}

// A search as an application makes it: the handle, and with it the socket, opened for it alone.
void FindOneWithAHandleOfItsOwn(std::size_t index) {
  SlpSession session;
  Require(session.Find(OnlyThis(index)) == 1, "the equality filter finds one");
}

struct Operation {
  std::string name;
  std::size_t runs;
  bool growth_is_limited;
  std::function<void(SlpSession&, std::size_t number)> run;
};

// In this order: what is registered first is what is deregistered at last, so that the size stays.
std::vector<Operation> OperationsAt(std::size_t size) {
  std::vector<Operation> operations = {
      {"register", kRuns, true,
       [size](SlpSession& session, std::size_t number) { session.Register(size + number); }},
      {"register again", kRuns, false,
       [size](SlpSession& session, std::size_t number) { session.Register(Somewhere(number, size)); }},
      {"find one, equality filter", kRuns, true,
       [size](SlpSession& session, std::size_t number) {
         Require(session.Find(OnlyThis(Somewhere(number, size))) == 1, "the equality filter finds one");
       }},
      {"find one, handle opened each time", kRuns, false,
       [size](SlpSession&, std::size_t number) { FindOneWithAHandleOfItsOwn(Somewhere(number, size)); }},
      {"find none", kRuns, false,
       [](SlpSession& session, std::size_t) {
         Require(session.Find("(id=nobody)") == 0, "nobody is found");
       }},
      {"find one by its beginning", kRuns, false,
       [size](SlpSession& session, std::size_t number) {
         Require(session.Find(OnlyThisByBeginning(Somewhere(number, size))) == 1, "the beginning finds one");
       }},
      {"find none by comparison", kRuns, false,
       [](SlpSession& session, std::size_t) {
         Require(session.Find("(x-server-ns-port>=9000)") == 0, "no port is so large");
       }},
      {"find one by its end", kScans, false,
       [size](SlpSession& session, std::size_t number) {
         Require(session.Find(OnlyThisByEnd(Somewhere(number, size))) == 1, "the end finds one");
       }},
      {"attributes of one", kRuns, true,
       [size](SlpSession& session, std::size_t number) {
         const std::size_t index = Somewhere(number, size);
         Require(session.ReadAttributes(index) == Attributes(index).size(), "the attributes are whole");
       }},
      {"service types", kRuns, false,
       [](SlpSession& session, std::size_t) { Require(session.ReadTypes() > 0, "there is a type"); }},
      {"deregister", kRuns, true,
       [size](SlpSession& session, std::size_t number) { session.Deregister(size + number); }},
  };
  if (size <= kMostDelivered) {
    operations.insert(operations.end() - 1,
                      {"find all", kScans, false, [size](SlpSession& session, std::size_t) {
                         // What is registered beyond the size for the time being is found as well.
                         Require(session.Find("") == size + kRuns, "all are found");
                       }});
  }
  return operations;
}

/// p50 of one thread, by operation and size, for the targets.
using Medians = std::map<std::string, std::map<std::size_t, double>>;

void MeasureAt(std::size_t size, BenchDaemon& daemon, Medians& medians, std::vector<Row>& rows) {
  for (const std::size_t threads : kThreads) {
    for (const Operation& operation : OperationsAt(size)) {
      const ProcessUsage before = daemon.Usage();
      const Workload workload = Run(operation.runs, threads, operation.run);
      const std::chrono::milliseconds busy = daemon.Usage().processor_time - before.processor_time;
      const double median = workload.latencies.Percentile(50).count();
      if (threads == 1) {
        medians[operation.name][size] = median;
      }
      rows.push_back(
          {operation.name, std::to_string(size), std::to_string(threads), Number(workload.PerSecond()),
           Number(median), Number(workload.latencies.Percentile(99).count()),
           Number(static_cast<double>(busy.count()) * 1000 / static_cast<double>(operation.runs))});
    }
  }
}

void PrintGrowth(const Medians& medians, std::size_t smallest, std::size_t largest) {
  for (const Operation& operation : OperationsAt(smallest)) {
    if (operation.growth_is_limited) {
      const std::map<std::size_t, double>& by_size = medians.at(operation.name);
      PrintTarget(
          operation.name + ", p50 at " + std::to_string(largest) + " over p50 at " + std::to_string(smallest),
          by_size.at(largest) / by_size.at(smallest), kLargestGrowth, " times");
    }
  }
}

struct Comparison {
  Latencies searches;
  Latencies round_trips;

  double Ratio() const { return searches.Percentile(50) / round_trips.Percentile(50); }
};

Comparison CompareInPlace(const EchoProcess& echo) {
  constexpr std::size_t kDatagram = 80;  // bytes; about the request and the reply
  Comparison comparison;
  for (int round = 0; round < 10; ++round) {  // by turns, so that both see the same machine
    comparison.round_trips.Add(echo.TimeRoundTrips(200, kDatagram));
    for (std::size_t number = 0; number < 200; ++number) {
      comparison.searches.Time([&] { FindOneWithAHandleOfItsOwn(number % 100); });
    }
  }
  return comparison;
}

// Echo and daemon have the same place: on the processor of those who ask, and on another one.
void CompareWithBareRoundTrip(const EchoProcess& echo, BenchDaemon& daemon) {
  const std::vector<int> processors = Processors();
  std::vector<Row> rows = {{"unicast, socket opened each time", "bare UDP round trip, p50 us", "p99 us",
                            "search that finds one, p50 us", "p99 us", "times"}};
  double largest_ratio = 0;
  for (const int theirs : {processors.front(), processors.back()}) {
    const Placement placement(processors.front(), {echo.process_id(), daemon.process_id()}, theirs);
    const Comparison comparison = CompareInPlace(echo);
    rows.push_back({theirs == processors.front() ? "on one processor" : "on a processor each",
                    Number(comparison.round_trips.Percentile(50).count()),
                    Number(comparison.round_trips.Percentile(99).count()),
                    Number(comparison.searches.Percentile(50).count()),
                    Number(comparison.searches.Percentile(99).count()), Number(comparison.Ratio())});
    largest_ratio = std::max(largest_ratio, comparison.Ratio());
  }
  PrintTable(rows);
  PrintTarget("a search that finds one over a bare UDP round trip, p50, the larger of both", largest_ratio,
              kMostRoundTrips, " times");
}

// Registers the services from the `first` on until there are `size`.
void Fill(std::size_t first, std::size_t size) {
  Run(size - first, 1,
      [first](SlpSession& session, std::size_t number) { session.Register(first + number); });
}

// A daemon that only grows, so that nothing but registrations takes memory between two sizes.
void MeasureMemory(const std::vector<std::size_t>& sizes) {
  BenchDaemon daemon;
  const SlpSession keeps_the_properties;
  const std::size_t empty = daemon.Usage().resident_bytes;
  std::vector<Row> rows = {{"registrations", "resident MB", "bytes each", "bytes each beyond the row above"}};
  std::size_t registered = 0;
  std::size_t before = empty;
  double bytes_each = 0;
  for (const std::size_t size : sizes) {
    Fill(registered, size);
    const std::size_t resident = daemon.Usage().resident_bytes;
    bytes_each = static_cast<double>(resident - empty) / static_cast<double>(size);
    rows.push_back({std::to_string(size), Number(static_cast<double>(resident) / 1e6), Number(bytes_each),
                    Number(static_cast<double>(resident - before) / static_cast<double>(size - registered))});
    registered = size;
    before = resident;
  }
  PrintTable(rows);
  PrintTarget("resident memory a registration at " + std::to_string(sizes.back()), bytes_each, kMostBytes,
              " bytes");
}

void Measure(const std::vector<std::size_t>& sizes) {
  const EchoProcess echo;
  MeasureMemory(sizes);
  BenchDaemon daemon;
  const SlpSession keeps_the_properties;
  std::size_t registered = 0;
  Medians medians;
  std::vector<Row> rows = {
      {"operation", "registrations", "threads", "a second", "p50 us", "p99 us", "daemon CPU us"}};
  for (const std::size_t size : sizes) {
    Fill(registered, size);
    registered = size;
    if (size == sizes.front()) {
      CompareWithBareRoundTrip(echo, daemon);
    }
    MeasureAt(size, daemon, medians, rows);
  }
  PrintTable(rows);
  PrintGrowth(medians, sizes.front(), sizes.back());
  if (std::find(sizes.begin(), sizes.end(), kMostDelivered) != sizes.end()) {
    std::cout << "- met: every search for all of " << kMostDelivered
              << " services of one type delivered all of them; otherwise there would be no report"
              << std::endl;
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  try {
    bench::Measure(bench::MeasuredSizes(argc, argv, "Measures slpd through the SLP C API."));
  } catch (const std::exception& error) {
    std::cerr << "the measurement failed: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
