// The daemon from its configuration to its end, whoever supervises it. Everything happens on the thread that
// calls Run.
#pragma once

#include <asio/io_context.hpp>
#include <string>
#include <vector>

#include "slpd/server/command_line.h"
#include "slpd/server/configuration.h"
#include "slpd/server/log.h"
#include "slpd/server/pid_file.h"
#include "slpd/server/privileges.h"
#include "slpd/server/server.h"
#include "slpd/server/supervisor.h"

namespace slp {

/// Where the command line leads the daemon for its settings.
ConfigurationSources SourcesOf(const CommandLine& command_line);

class Daemon {
 public:
  /// All arguments outlive the daemon.
  Daemon(const CommandLine& command_line, asio::io_context& io, Supervisor& supervisor);

  /// Serves until it is ordered to stop. Once.
  ExitStatus Run();

 private:
  ExitStatus Fail(const std::string& reason);
  FilesInUse FilesOf(const Configuration& configuration) const;
  void Tell(const std::vector<std::string>& problems);
  void TellObstacles(const Configuration& configuration);
  void OnStop();
  void OnReload();

  const CommandLine& command_line_;
  asio::io_context& io_;
  Supervisor& supervisor_;
  ConfigurationSources sources_;
  Log log_;
  PidFile pid_file_;
  Privileges privileges_;
  Server server_;
};

}  // namespace slp
