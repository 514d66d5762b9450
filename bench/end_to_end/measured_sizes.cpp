#include "bench/end_to_end/measured_sizes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

namespace bench {

std::vector<std::size_t> MeasuredSizes(int argc, char** argv, const char* what_it_measures) {
  CLI::App app(what_it_measures);
  std::vector<std::size_t> sizes = {100, 1000, 10'000, 100'000};
  app.add_option("--sizes", sizes, "Numbers of registrations to measure at, e.g. 100,20000")
      ->delimiter(',')
      ->check(CLI::Range(1, 1'000'000));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::exit(app.exit(error) == 0 ? 0 : 2);
  }
  std::sort(sizes.begin(), sizes.end());
  return sizes;
}

}  // namespace bench
