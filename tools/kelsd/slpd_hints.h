// What to do about a daemon that cannot be controlled, which each system does in its own way. Any thread.
#pragma once

namespace kelsd_tool {

/// It was not found, or may not be controlled.
extern const char* const kSlpdOpenHint;

/// It does not start.
extern const char* const kSlpdStartHint;

}  // namespace kelsd_tool
