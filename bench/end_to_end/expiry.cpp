#include "bench/end_to_end/expiry.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"
#include "bench/support/services.h"
#include "bench/support/table.h"

namespace bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t kServices = 10;
constexpr std::size_t kFirstIndex = 10'000'000;  // beyond those of all other measurements
constexpr std::chrono::milliseconds kApart{130};
constexpr std::chrono::milliseconds kBetweenSearches{1};
constexpr std::chrono::seconds kGivenUp{10};
constexpr double kLatest = 1000;

// From the end of the lifetime, which begins when the registration is sent, to the return of the first search
// that finds nothing, or of the last one when all find it: at most too much, by a search and a pause.
Milliseconds LatenessOf(std::size_t index, unsigned short lifetime) {
  SlpSession session;
  const Clock::time_point end = Clock::now() + std::chrono::seconds(lifetime);
  session.RegisterFor(index, lifetime);
  while (session.Find(OnlyThis(index)) != 0 && Clock::now() < end + kGivenUp) {
    std::this_thread::sleep_for(kBetweenSearches);
  }
  return Clock::now() - end;
}

}  // namespace

void MeasureExpiry() {
  std::vector<std::future<Milliseconds>> services;
  for (std::size_t number = 0; number < kServices; ++number) {
    const auto lifetime = static_cast<unsigned short>(2 + number % 2);
    services.push_back(std::async(std::launch::async, LatenessOf, kFirstIndex + number, lifetime));
    std::this_thread::sleep_for(kApart);
  }
  std::vector<Milliseconds> lateness;
  lateness.reserve(kServices);
  for (std::future<Milliseconds>& service : services) {
    lateness.push_back(service.get());
  }
  const auto [earliest, latest] = std::minmax_element(lateness.begin(), lateness.end());
  const std::string of_all = " of " + std::to_string(kServices) + " with lifetimes of two and three seconds";
  PrintAtLeast("lateness of an expiry, the earliest" + of_all, earliest->count(), 0, " ms");
  PrintAtMost("lateness of an expiry, the latest" + of_all, latest->count(), kLatest, " ms");
}

}  // namespace bench
