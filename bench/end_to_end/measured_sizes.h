// What a benchmark is asked for on its command line: how many registrations it measures at.
#pragma once

#include <cstddef>
#include <vector>

namespace bench {

/// The sizes of `--sizes 100,1000`, ascending, or these four up to 100,000 without it. Ends the program with
/// the usage text and status 2 when the command line is wrong, with status 0 when it asks for help.
std::vector<std::size_t> MeasuredSizes(int argc, char** argv, const char* what_it_measures);

}  // namespace bench
