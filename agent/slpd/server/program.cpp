#include "slpd/server/program.h"

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "slpd/registration_file.h"
#include "slpd/server/command_line.h"
#include "slpd/server/configuration.h"
#include "slpd/server/default_paths.h"
#include "slpd/server/log.h"
#include "slpd/server/pid_file.h"
#include "slpd/server/server.h"
#include "slpd/server/signals.h"

namespace slp {
namespace {

std::int64_t SecondsSince1970() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::chrono::milliseconds SteadyTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

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

class Program {
 public:
  explicit Program(const CommandLine& command_line)
      : command_line_(command_line),
        sources_(SourcesOf(command_line)),
        log_(std::cerr, [] { return std::chrono::system_clock::now(); }) {}

  ExitStatus Check();
  ExitStatus Run();

 private:
  ExitStatus Fail(ExitStatus status, const std::string& reason);
  void OnStop();
  void OnReload();

  const CommandLine& command_line_;
  ConfigurationSources sources_;
  Log log_;
  PidFile pid_file_;
  asio::io_context io_{1};
  Server server_{io_, log_, SteadyTime};
};

// The reason is the last line on the error output, where whoever started the program finds it.
ExitStatus Program::Fail(ExitStatus status, const std::string& reason) {
  if (!command_line_.log_file.empty()) {
    log_.Write(LogKind::kProblem, reason);
  }
  std::cerr << "slpd: " << reason << std::endl;
  return status;
}

ExitStatus Program::Check() {
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(sources_, problems);
  std::vector<PropertyProblem> in_registrations;
  Trace events(log_);
  Registry registry(events);
  const std::size_t count =
      LoadRegistrationFile(configuration.settings, registry, Seconds(0), in_registrations);
  for (const PropertyProblem& problem : in_registrations) {
    problems.push_back(problem.ToString());
  }
  for (const std::string& problem : problems) {
    std::cerr << problem << "\n";
  }
  if (!problems.empty()) {
    return ExitStatus::kFailed;
  }
  std::cout << "No problem found; " << count << " registrations in the registration file.\n";
  return ExitStatus::kOk;
}

// Steps:
// 1. Read the configuration; what is wrong in it is told once there is a log.
// 2. Take the pid file's lock: only one daemon runs by it. Before the log, so that a second one leaves the
// log of
//    the first alone.
// 3. Open the log.
// 4. Start the server, which binds the sockets.
// 5. Only then say in the pid file that the daemon serves.
// 6. Run until a signal.
ExitStatus Program::Run() {
  const std::int64_t start_time = SecondsSince1970();
  std::string reason;
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(sources_, problems);

  const std::string pid_path = command_line_.pid_file.empty() ? DefaultPidFile() : command_line_.pid_file;
  if (!pid_path.empty()) {
    const PidFile::Outcome outcome = pid_file_.Lock(pid_path, reason);
    if (outcome != PidFile::Outcome::kLocked) {
      std::cerr << "slpd: " << reason << std::endl;
      return outcome == PidFile::Outcome::kHeld ? ExitStatus::kAlreadyRunning : ExitStatus::kFailed;
    }
  }
  if (!command_line_.log_file.empty() &&
      !log_.Open(command_line_.log_file, configuration.properties.GetBool("net.slp.appendLog"), reason)) {
    std::cerr << "slpd: " << reason << std::endl;
    return ExitStatus::kFailed;
  }
  for (const std::string& problem : problems) {
    log_.Write(LogKind::kProblem, problem);
  }
  if (pid_path.empty()) {
    log_.Write(LogKind::kState, "slpd: no place for a pid file, so there is none; --pidfile names one");
  }

  asio::signal_set stop(io_);
  for (const int signal : StopSignals()) {
    stop.add(signal);
  }
  stop.async_wait([this](const asio::error_code& error, int) {
    if (!error) {
      OnStop();
    }
  });
  asio::signal_set reload(io_);
  for (const int signal : ReloadSignals()) {
    reload.add(signal);
  }
  const std::function<void()> wait_for_reload = [&] {
    reload.async_wait([&](const asio::error_code& error, int) {
      if (!error) {
        OnReload();
        wait_for_reload();
      }
    });
  };
  wait_for_reload();

  if (!server_.Start(configuration, reason)) {
    return Fail(ExitStatus::kFailed, reason);
  }
  if (!pid_path.empty() && !pid_file_.Announce(start_time)) {
    return Fail(ExitStatus::kFailed, "cannot write the pid file " + pid_path);
  }
  io_.run();
  log_.Write(LogKind::kState, "slpd: ended");
  return ExitStatus::kOk;
}

void Program::OnStop() {
  log_.Write(LogKind::kState, "slpd: asked to end");
  server_.Stop();
  io_.stop();
}

void Program::OnReload() {
  std::string reason;
  if (!command_line_.log_file.empty() && !log_.Open(command_line_.log_file, true, reason)) {
    log_.Write(LogKind::kProblem, reason);
  }
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(sources_, problems);
  if (!problems.empty()) {
    for (const std::string& problem : problems) {
      log_.Write(LogKind::kProblem, problem);
    }
    log_.Write(LogKind::kProblem, "slpd: not reloaded, all stays as it was");
  } else if (!server_.Reload(configuration, reason)) {
    log_.Write(LogKind::kProblem, reason);
    log_.Write(LogKind::kProblem, "slpd: not reloaded, all stays as it was");
  }
}

}  // namespace

int RunProgram(int argument_count, const char* const* arguments) {
  const auto parsed = ParseCommandLine(argument_count, arguments);
  if (const EarlyExit* const early = std::get_if<EarlyExit>(&parsed)) {
    (early->status == ExitStatus::kOk ? std::cout : std::cerr) << early->text;
    return static_cast<int>(early->status);
  }
  IgnoreBrokenPipes();
  const auto& command_line = std::get<CommandLine>(parsed);
  Program program(command_line);
  return static_cast<int>(command_line.check ? program.Check() : program.Run());
}

}  // namespace slp
