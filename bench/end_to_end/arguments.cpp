#include "bench/end_to_end/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <limits>

namespace bench {
namespace {

constexpr const char* kRunningDaemon =
    "Measure the daemon that runs as this process, CPU time and memory of it, in place of the built slpd. It "
    "holds no services yet, and the configuration file of the environment variable OpenSLPConfig leads to "
    "it.";

constexpr const char* kExample =
    "Example, for a daemon that runs on this machine:\n"
    "  OpenSLPConfig=/etc/slp.conf bench_slp_api --sizes 100,20000 --daemon-pid $(pidof slpd)";

}  // namespace

Arguments ReadArguments(int argc, char** argv, const char* what_it_measures, Daemons daemons) {
  CLI::App app(what_it_measures);
  Arguments arguments{{100, 1000, 10'000, 100'000}, {}};
  app.add_option("--sizes", arguments.sizes, "Numbers of registrations to measure at, e.g. 100,20000")
      ->delimiter(',')
      ->check(CLI::Range(1, 1'000'000));
  if (daemons == Daemons::kOwnOrRunning) {
    app.add_option("--daemon-pid", arguments.running_daemon, kRunningDaemon)
        ->check(CLI::Range(1, std::numeric_limits<int>::max()));
    app.footer(kExample);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::exit(app.exit(error) == 0 ? 0 : 2);
  }
  std::sort(arguments.sizes.begin(), arguments.sizes.end());
  arguments.sizes.erase(std::unique(arguments.sizes.begin(), arguments.sizes.end()), arguments.sizes.end());
  return arguments;
}

}  // namespace bench
