// What the tool needs to know of the terminal and the process environment. One implementation a platform.
#pragma once

#include <optional>
#include <string>

namespace kelsd_tool {

/// Columns of the terminal behind standard output; none when it is no terminal.
std::optional<int> OutputWidth();

/// Whether standard error is a terminal, so that progress may be drawn there.
bool ErrorIsTerminal();

/// Makes the terminal take what the tool writes as UTF-8 for as long as it lives.
class Utf8Output {
 public:
  Utf8Output();
  ~Utf8Output();  // NOLINT(performance-trivially-destructible): it has work to do on Windows
  Utf8Output(const Utf8Output&) = delete;
  Utf8Output& operator=(const Utf8Output&) = delete;

 private:
  [[maybe_unused]] unsigned int former_ = 0;  ///< what the terminal took before, where it can be told
};

/// Sets a variable of this process's environment, for the libraries that it loads too.
void SetEnvironment(const std::string& name, const std::string& value);

}  // namespace kelsd_tool
