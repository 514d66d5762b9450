// kelsd: finds and announces services, reads their attributes, and looks after configuration and daemon, over
// the library's exported classes.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "console.h"

namespace {

constexpr const char* kOverview = R"help(Examples:
  kelsd find zdrest                      all ZD servers on the network
  kelsd find zdrest --ip 10.0.0.5        the one with this address
  kelsd find terminal --address 10.0.0.5 what one host offers
  kelsd attributes service:zdrest.tamro:http://10.0.0.5:8080
  kelsd register zdrest --address 10.0.0.5:8080 --attr x-server-name=srv1
  kelsd slpd status
  kelsd doctor                           what is wrong here, and what to do
  kelsd parse service:zdrest.tamro:http://10.0.0.5:8080/api
  kelsd config show --client

'kelsd VERB --help' explains a verb and shows its own examples.
Exit status: 0 found, 1 nothing found, 2 usage, 3 failure.)help";

}  // namespace

int main(int argc, char** argv) {
  kelsd_tool::Console console(std::cout, std::cerr);
  kelsd_tool::ExitStatus status = kelsd_tool::kUsage;
  CLI::App app("Finds and announces the services of the product family on the local network over SLP.",
               "kelsd");
  app.set_version_flag("--version", std::string("kelsd ") + KELSD_VERSION);
  app.require_subcommand(1);
  app.footer(kOverview);
  kelsd_tool::AddFind(app, console, status);
  kelsd_tool::AddAttributes(app, console, status);
  kelsd_tool::AddRegister(app, console, status);
  kelsd_tool::AddDeregister(app, console, status);
  kelsd_tool::AddParse(app, console, status);
  kelsd_tool::AddConfig(app, console, status);
  kelsd_tool::AddSlpd(app, console, status);
  kelsd_tool::AddDoctor(app, console, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::RequiredError& missing) {
    // A verb that is misspelt is left over, and missing at the same time.
    const std::vector<std::string> unexpected = app.remaining(true);
    if (!unexpected.empty()) {
      return console.RejectUsage("'" + unexpected.front() +
                                 "' was not expected; --help lists what can be given");
    }
    app.exit(missing);
    return kelsd_tool::kUsage;
  } catch (const CLI::ParseError& request) {
    return app.exit(request) == 0 ? kelsd_tool::kFound : kelsd_tool::kUsage;
  } catch (const std::exception& failure) {
    console.PrintError(failure.what());
    return kelsd_tool::kFailure;
  }
  return status;
}
