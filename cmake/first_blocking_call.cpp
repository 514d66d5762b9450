// Part of the programs that are built with the thread sanitizer and that end or reload at a signal. The
// sanitizer's runtime makes its record of a thread's signals at the thread's first call that may block, and
// loses a signal that comes while it does: to a daemon that has just said that it serves, one in some
// hundreds. So the main thread makes that call before anyone can know of the program.
#include <unistd.h>

namespace {

[[maybe_unused]] const int first_blocking_call = ::usleep(1);

}  // namespace
