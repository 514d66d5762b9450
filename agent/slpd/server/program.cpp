#include "slpd/server/program.h"

#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "slpd/registry/registration_file.h"
#include "slpd/server/command_line.h"
#include "slpd/server/daemon.h"
#include "slpd/server/foreground.h"
#include "slpd/server/privileges.h"
#include "slpd/server/service.h"
#include "slpd/server/signals.h"
#include "slpd/server/trace.h"

namespace slp {
namespace {

ExitStatus Check(const CommandLine& command_line) {
  std::vector<std::string> problems;
  const Configuration configuration = ReadConfiguration(SourcesOf(command_line), problems);
  if (std::string problem; !Privileges().Prepare(command_line.user, problem)) {
    problems.push_back(problem);
  }
  std::vector<PropertyProblem> in_registrations;
  Log log(std::cerr, [] { return std::chrono::system_clock::now(); });
  Trace events(log);
  Registry registry(events);
  const RegistrationFile file = ReadRegistrationFile(configuration.settings, in_registrations);
  const std::size_t count = LoadRegistrations(file, registry, Seconds(0), in_registrations);
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

ExitStatus Perform(const CommandLine& command_line) {
  if (command_line.verb != Verb::kNone) {
    return PerformServiceVerb(command_line);
  }
  return command_line.check ? Check(command_line) : RunInForeground(command_line);
}

}  // namespace

int RunProgram(int argument_count, const char* const* arguments) {
  const auto parsed = ParseCommandLine(argument_count, arguments);
  if (const EarlyExit* const early = std::get_if<EarlyExit>(&parsed)) {
    (early->status == ExitStatus::kOk ? std::cout : std::cerr) << early->text;
    return static_cast<int>(early->status);
  }
  IgnoreBrokenPipes();
  return static_cast<int>(Perform(std::get<CommandLine>(parsed)));
}

}  // namespace slp
