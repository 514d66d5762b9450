// What every verb that uses the library shares: its options, and getting the library ready with them.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "console.h"
#include "exit_status.h"

namespace kelsd_tool {

class SearchSession {
 public:
  /// --config and --json.
  void AddCommonOptions(CLI::App& verb);
  /// --timeout and --interface, and the common ones.
  void AddSearchOptions(CLI::App& verb);

  /// Names the configuration file, for verbs that need nothing else of the library.
  void UseConfiguration() const;

  /// Names the configuration file, initialises the library and applies timeout and interfaces. None when all
  /// went well, else the status to leave with; the reason has been printed then.
  std::optional<ExitStatus> Open(Console& console);

  /// The two halves of Open, for verbs that tell of a failing initialisation themselves.
  kelsd::SResult Initialize() const;
  std::optional<ExitStatus> ApplyClientConfig(Console& console);

  bool json() const { return json_; }

 private:
  std::string config_file_;
  bool json_ = false;
  std::optional<int> timeout_;
  std::vector<std::string> interfaces_;
};

}  // namespace kelsd_tool
