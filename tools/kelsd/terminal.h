// What the tool needs to know of the terminal and the process environment. One implementation a platform.
#pragma once

#include <optional>
#include <string>

namespace kelsd_tool {

/// Columns of the terminal behind standard output; none when it is no terminal.
std::optional<int> OutputWidth();

/// Whether standard error is a terminal, so that progress may be drawn there.
bool ErrorIsTerminal();

/// Sets a variable of this process's environment, for the libraries that it loads too.
void SetEnvironment(const std::string& name, const std::string& value);

}  // namespace kelsd_tool
