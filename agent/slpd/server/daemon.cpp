#include "slpd/server/daemon.h"

#include <algorithm>
#include <chrono>
#include <iostream>

#include "slpd/server/default_paths.h"

namespace slp {
namespace {

// What is told of the configuration at once.
constexpr std::size_t kMostProblems = 20;

std::int64_t SecondsSince1970() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::chrono::milliseconds SteadyTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace

ConfigurationSources SourcesOf(const CommandLine& command_line) {
  ConfigurationSources sources;
  if (!command_line.config_file.empty()) {
    sources.files.environment = command_line.config_file;
  }
  sources.overrides = command_line.properties;
  sources.registration_file = command_line.registration_file;
  sources.default_registration_file = DefaultRegistrationFile();
  return sources;
}

Daemon::Daemon(const CommandLine& command_line, asio::io_context& io, Supervisor& supervisor)
    : command_line_(command_line),
      io_(io),
      supervisor_(supervisor),
      sources_(SourcesOf(command_line)),
      log_(std::cerr, [] { return std::chrono::system_clock::now(); }),
      server_(io, log_, SteadyTime) {
  log_.TellProblems([this](std::string_view text) { supervisor_.OnProblem(text); });
}

ExitStatus Daemon::Fail(const std::string& reason) {
  log_.TellProblems({});  // the supervisor hears it once
  if (!command_line_.log_file.empty()) {
    log_.Write(LogKind::kProblem, reason);
  }
  supervisor_.OnFailure(reason);
  return ExitStatus::kFailed;
}

FilesInUse Daemon::FilesOf(const Configuration& configuration) const {
  const std::string& registrations = configuration.settings.registration_file;
  return {{sources_.files.global, sources_.files.environment,
           registrations.empty() ? sources_.default_registration_file : registrations},
          command_line_.log_file};
}

// Of a file that is none there may be thousands: they would use up what the log takes of problems in a
// minute, and leave no place for what became of the reload.
void Daemon::Tell(const std::vector<std::string>& problems) {
  const std::size_t told = std::min(problems.size(), kMostProblems);
  for (std::size_t i = 0; i != told; ++i) {
    log_.Write(LogKind::kProblem, problems[i]);
  }
  if (told != problems.size()) {
    log_.Write(LogKind::kProblem, std::to_string(problems.size() - told) +
                                      " more problems in the configuration; slpd --check tells all of them");
  }
}

void Daemon::TellObstacles(const Configuration& configuration) {
  for (const std::string& obstacle : privileges_.Obstacles(FilesOf(configuration))) {
    log_.Write(LogKind::kProblem, obstacle);
  }
}

// Steps:
// 1. Read the configuration; what is wrong in it is told once there is a log.
// 2. Make sure that the user whom the daemon shall become exists.
// 3. Take the pid file's lock: only one daemon runs by it. Before the log, so that a second one leaves the
//    log of the first alone.
// 4. Open the log.
// 5. Start the server, which binds the sockets.
// 6. Give up what serving does not take. No request has been looked at yet.
// 7. Only then say, in the pid file and to the supervisor, that the daemon serves.
// 8. Run until the order to stop.
ExitStatus Daemon::Run() {
  const std::int64_t start_time = SecondsSince1970();
  std::string reason;
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(sources_, problems);
  supervisor_.OnProgress();
  if (!privileges_.Prepare(command_line_.user, reason)) {
    supervisor_.OnFailure(reason);
    return ExitStatus::kFailed;
  }

  const std::string pid_path = command_line_.pid_file.empty() ? DefaultPidFile() : command_line_.pid_file;
  if (!pid_path.empty()) {
    const PidFile::Outcome outcome = pid_file_.Lock(pid_path, reason);
    if (outcome != PidFile::Outcome::kLocked) {
      supervisor_.OnFailure(reason);
      return outcome == PidFile::Outcome::kHeld ? ExitStatus::kAlreadyRunning : ExitStatus::kFailed;
    }
  }
  supervisor_.OnProgress();
  if (!command_line_.log_file.empty() &&
      !log_.Open(command_line_.log_file, configuration.properties.GetBool("net.slp.appendLog"), reason)) {
    supervisor_.OnFailure(reason);
    return ExitStatus::kFailed;
  }
  Tell(problems);
  if (pid_path.empty()) {
    log_.Write(LogKind::kState, "slpd: no place for a pid file, so there is none; --pidfile names one");
  }
  supervisor_.OnProgress();

  supervisor_.Follow({[this] { OnStop(); }, [this] { OnReload(); }});
  if (!server_.Start(configuration, reason)) {
    return Fail(reason);
  }
  std::string rights;
  if (!privileges_.GiveUp(FilesOf(configuration), rights)) {
    return Fail(rights);
  }
  if (!rights.empty()) {
    log_.Write(LogKind::kState, rights);
  }
  TellObstacles(configuration);
  if (!pid_path.empty() && !pid_file_.Announce(start_time)) {
    return Fail("cannot write the pid file " + pid_path);
  }
  supervisor_.OnServing();
  io_.run();
  log_.Write(LogKind::kState, "slpd: ended");
  return ExitStatus::kOk;
}

void Daemon::OnStop() {
  supervisor_.OnEnding();
  log_.Write(LogKind::kState, "slpd: asked to end");
  server_.End([this] { io_.stop(); });
}

void Daemon::OnReload() {
  std::string reason;
  if (!command_line_.log_file.empty() && !log_.Open(command_line_.log_file, true, reason)) {
    log_.Write(LogKind::kProblem, reason);
  }
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(sources_, problems);
  TellObstacles(configuration);
  if (!problems.empty()) {
    Tell(problems);
    log_.Write(LogKind::kProblem, "slpd: not reloaded, all stays as it was");
  } else if (!server_.Reload(configuration, reason)) {
    log_.Write(LogKind::kProblem, reason);
    log_.Write(LogKind::kProblem, "slpd: not reloaded, all stays as it was");
  }
}

}  // namespace slp
