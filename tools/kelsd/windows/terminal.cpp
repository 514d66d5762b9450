#include "terminal.h"

#include <windows.h>

#include <cstdlib>

namespace kelsd_tool {

std::optional<int> OutputWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
    return std::nullopt;
  }
  return info.srWindow.Right - info.srWindow.Left + 1;
}

bool ErrorIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

Utf8Output::Utf8Output() : former_(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
}

// The console outlives the tool.
Utf8Output::~Utf8Output() {
  if (former_ != 0) {
    SetConsoleOutputCP(former_);
  }
}

// The C run-time library keeps a copy of the environment of its own, which getenv reads: both are set.
void SetEnvironment(const std::string& name, const std::string& value) {
  SetEnvironmentVariableA(name.c_str(), value.c_str());
  _putenv_s(name.c_str(), value.c_str());
}

}  // namespace kelsd_tool
