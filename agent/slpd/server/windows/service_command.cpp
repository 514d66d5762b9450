#include "slpd/server/windows/service_command.h"

#include <windows.h>

#include "properties/properties.h"

namespace slp {
namespace {

std::string FullPath(const std::string& path) {
  const DWORD size = GetFullPathNameA(path.c_str(), 0, nullptr, nullptr);
  if (size == 0) {
    return path;
  }
  std::string full(size, '\0');
  full.resize(GetFullPathNameA(path.c_str(), size, full.data(), nullptr));
  return full;
}

// Backslashes count only before a quote: there each one, and the quote itself, takes another one before it.
std::string Quoted(const std::string& argument) {
  std::string text = "\"";
  std::size_t backslashes = 0;
  for (const char character : argument) {
    if (character == '"') {
      text.append(backslashes + 1, '\\');
    }
    backslashes = character == '\\' ? backslashes + 1 : 0;
    text += character;
  }
  text.append(backslashes, '\\');
  return text + '"';
}

}  // namespace

std::string JoinArguments(const std::vector<std::string>& arguments) {
  std::string text;
  for (const std::string& argument : arguments) {
    const bool plain = !argument.empty() && argument.find_first_of(" \t\n\v\"") == std::string::npos;
    // The program is always quoted: a blank in its path must never let another program be found first.
    text += text.empty() ? "" : " ";
    text += plain && !text.empty() ? argument : Quoted(argument);
  }
  return text;
}

std::vector<std::string> ServiceArguments(const std::string& program, const CommandLine& command_line) {
  const std::string configuration =
      command_line.config_file.empty() ? PropertyFiles::Default().environment : command_line.config_file;
  const std::pair<const char*, const std::string&> files[] = {
      {"--config", configuration},
      {"--regfile", command_line.registration_file},
      {"--log", command_line.log_file},
      {"--pidfile", command_line.pid_file},
  };
  std::vector<std::string> arguments{program, "run"};
  for (const auto& [option, file] : files) {
    if (!file.empty()) {
      arguments.insert(arguments.end(), {option, FullPath(file)});
    }
  }
  for (const auto& [key, value] : command_line.properties) {
    arguments.insert(arguments.end(), {"--property", key + "=" + value});
  }
  return arguments;
}

std::string OwnProgram() {
  std::string path(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace slp
