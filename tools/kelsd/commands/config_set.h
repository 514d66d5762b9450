// kelsd config set, and the options that it shares with the other verbs of kelsd config.
#pragma once

#include <string>
#include <vector>

#include "console.h"
#include "exit_status.h"
#include "search_session.h"

namespace kelsd_tool {

struct ConfigOptions {
  SearchSession session;
  bool client = false;
  std::string key;
  std::vector<std::string> assignments;
};

/// Changes the daemon's settings, in the configuration file, or with --client those of this process's
/// searches.
ExitStatus SetSettings(ConfigOptions& options, Console& console);

}  // namespace kelsd_tool
