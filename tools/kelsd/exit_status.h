// What the tool's exit status says; scripts rely on the numbers.
#pragma once

namespace kelsd_tool {

enum ExitStatus : int {
  kFound = 0,         ///< done, and there was something to show
  kNothingFound = 1,  ///< done, and there was nothing
  kUsage = 2,         ///< the command line makes no sense
  kFailure = 3,       ///< the operation failed; standard error says why
};

}  // namespace kelsd_tool
