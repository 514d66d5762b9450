// kelsd slpd: the daemon of this host.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "commands/commands.h"
#include "kelsd/CKelSLPService.h"
#include "progress.h"
#include "search_session.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPService;
using kelsd::SResult;

struct Action {
  const char* name;
  const char* help;
  const char* progress;
  SResult (*perform)();
};

constexpr Action kActions[] = {
    {"start", "Start the daemon", "Starting slpd", &CKelSLPService::StartSLPD},
    {"stop", "Stop the daemon; nothing to do when it does not run", "Stopping slpd",
     &CKelSLPService::StopSLPD},
    {"restart", "Stop and start the daemon", "Restarting slpd", &CKelSLPService::RestartSLPD},
};

constexpr const char* kSlpdExamples = R"help(Examples:
  kelsd slpd status
  kelsd slpd start --config /etc/slp.conf
  kelsd slpd restart --json

Exit status: 0 done, or running; 1 not running (status only); 2 usage; 3 failure.)help";

ExitStatus PrintState(Console& console, bool json) {
  bool running = false;
  if (const SResult asked = CKelSLPService::IsSLPDRunning(running); asked.IsNotOk()) {
    return console.Fail(asked);
  }
  if (json) {
    console.PrintJson({{"running", running}});
  } else {
    console.PrintLine(running ? "slpd is running." : "slpd is not running.");
  }
  return running ? kFound : kNothingFound;
}

ExitStatus Perform(const Action& action, Console& console, bool json) {
  SResult done;
  {
    const Progress progress(action.progress);
    done = action.perform();
  }
  if (done.IsNotOk()) {
    return console.Fail(done);
  }
  return PrintState(console, json) == kFailure ? kFailure : kFound;
}

}  // namespace

void AddSlpd(CLI::App& app, Console& console, ExitStatus& status) {
  CLI::App* verb = app.add_subcommand("slpd", "Look after the SLP daemon of this host");
  verb->require_subcommand(1);
  verb->footer(kSlpdExamples);

  auto session = std::make_shared<SearchSession>();
  CLI::App* ask = verb->add_subcommand("status", "Say whether the daemon runs");
  session->AddCommonOptions(*ask);
  ask->footer(kSlpdExamples);
  ask->callback([session, &console, &status] {
    session->UseConfiguration();
    status = PrintState(console, session->json());
    if (status == kNothingFound) {
      console.PrintNote("hint: Start it: kelsd slpd start");
    }
  });
  for (const Action& action : kActions) {
    CLI::App* sub = verb->add_subcommand(action.name, action.help);
    session->AddCommonOptions(*sub);
    sub->footer(kSlpdExamples);
    sub->callback([session, &action, &console, &status] {
      session->UseConfiguration();
      status = Perform(action, console, session->json());
    });
  }
}

}  // namespace kelsd_tool
