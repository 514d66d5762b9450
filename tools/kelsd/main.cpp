// kelsd: finds and announces services, reads their attributes, and looks after configuration and daemon, over
// the library's exported classes.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "console.h"
#include "suggestion.h"
#include "terminal.h"

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
  kelsd config show

'kelsd VERB --help' explains a verb and shows its own examples.
Exit status: 0 found, 1 nothing found, 2 usage, 3 failure.)help";

// The verb that the command line got to.
CLI::App& DeepestVerb(CLI::App& app) {
  CLI::App* deepest = &app;
  while (!deepest->get_subcommands().empty()) {
    deepest = deepest->get_subcommands().front();
  }
  return *deepest;
}

// What could have stood in the place of `word`: options, or else verbs.
std::vector<std::string> Possible(const CLI::App& verb, const std::string& word) {
  std::vector<std::string> names;
  if (word.rfind('-', 0) == 0) {
    for (const CLI::Option* option : verb.get_options()) {
      for (const std::string& name : option->get_lnames()) {
        names.push_back("--" + name);
      }
    }
  } else {
    for (const CLI::App* sub : verb.get_subcommands([](const CLI::App*) { return true; })) {
      names.push_back(sub->get_name());
    }
  }
  return names;
}

// What is wrong with the command line. A verb that is misspelt is left over, and missing at the same time.
std::string Explain(CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& verb = DeepestVerb(app);
  std::string command = verb.get_name();
  for (const CLI::App* parent = verb.get_parent(); parent != nullptr; parent = parent->get_parent()) {
    command.insert(0, parent->get_name() + " ");
  }
  const std::string help = "'" + command + " --help' explains";
  const std::vector<std::string> unexpected = app.remaining(true);
  if (unexpected.empty()) {
    return error.what() + ("; " + help);
  }
  const std::string& word = unexpected.front();
  const auto meant = kelsd_tool::ClosestWord(word, Possible(verb, word));
  return "'" + word + "' was not expected; " + (meant ? "did you mean '" + *meant + "'? " : "") + help;
}

// The verb's status; that of the command line itself when no verb was run.
kelsd_tool::ExitStatus Run(int argc, char** argv, kelsd_tool::Console& console) {
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
  } catch (const CLI::Success& request) {
    app.exit(request);
    return kelsd_tool::kFound;
  } catch (const CLI::ParseError& error) {
    return console.RejectUsage(Explain(app, error));
  } catch (const std::exception& failure) {
    console.PrintError(failure.what());
    return kelsd_tool::kFailure;
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const kelsd_tool::Utf8Output utf8;
  kelsd_tool::Console console(std::cout, std::cerr);
  // Also for errors of the command line itself.
  if (std::any_of(argv, argv + argc, [](const char* word) { return word == std::string("--json"); })) {
    console.UseJson();
  }
  const kelsd_tool::ExitStatus status = Run(argc, argv, console);
  if (!console.OutputIsComplete()) {
    console.PrintError("the output could not be written");
    return kelsd_tool::kFailure;
  }
  return status;
}
