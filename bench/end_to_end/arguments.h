// What a benchmark is asked for on its command line.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace bench {

struct Arguments {
  std::vector<std::size_t> sizes;     ///< numbers of registrations to measure at, ascending, each once
  std::optional<int> running_daemon;  ///< its process id; without one the built slpd is started
};

/// Which daemons a program can measure: only one that it starts itself, or one that runs already too.
enum class Daemons { kOwn, kOwnOrRunning };

/// What the command line says, e.g. `--sizes 100,1000`; without sizes four up to 100,000. Ends the program
/// with the usage text and status 2 when the command line is wrong, with status 0 when it asks for help.
Arguments ReadArguments(int argc, char** argv, const char* what_it_measures, Daemons daemons);

}  // namespace bench
