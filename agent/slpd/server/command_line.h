// The daemon's command line. Pure but for the environment that fills defaults; any thread.
#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace slp {

/// What the daemon's exit status says.
enum class ExitStatus {
  kOk = 0,
  kFailed = 1,          ///< could not start; the last line on the error output says why
  kUsage = 2,           ///< the command line is wrong
  kAlreadyRunning = 3,  ///< another slpd holds the pid file
};

/// What the daemon's service is asked for, on systems with a service manager.
enum class Verb {
  kNone,       ///< the daemon itself is asked for
  kInstall,    ///< enter the service with the service manager
  kUninstall,  ///< remove it
  kRun,        ///< be it
};

struct CommandLine {
  Verb verb = Verb::kNone;
  std::string config_file;        ///< empty: what the environment variable OpenSLPConfig names
  std::string registration_file;  ///< empty: what the configuration says
  std::string log_file;           ///< empty: the error output
  std::string pid_file;           ///< empty: the platform's place
  std::string user = {};          ///< "NAME" or "NAME:GROUP" to become; empty: nobody else
  std::vector<std::pair<std::string, std::string>> properties;
  bool check = false;
};

/// A text to print instead of running: help and version on the standard output with kOk, the fault of a wrong
/// command line on the error output with kUsage.
struct EarlyExit {
  ExitStatus status = ExitStatus::kOk;
  std::string text;
};

std::variant<CommandLine, EarlyExit> ParseCommandLine(int argument_count, const char* const* arguments);

}  // namespace slp
