// The system calls that the daemon never makes, and that a program which an intruder runs in its place might:
// the Linux kernel is told to refuse them. One thread, the only one of the process.
#pragma once

namespace slp {

/// Whether this build can do that.
bool HasSystemCallFilter();

/// From now on those calls fail with EPERM, for good. Others are as they were. 0 or errno; 0 also where there
/// is no filter.
[[nodiscard]] int RefuseNeedlessSystemCalls();

}  // namespace slp
