#include "slpd/server/command_line.h"

#include <CLI/CLI.hpp>
#include <sstream>
#include <string_view>

#include "properties/catalogue.h"
#include "properties/property_values.h"
#include "text/fold.h"

namespace slp {
namespace {

constexpr std::string_view kVersionText = "slpd " KELSD_SLPD_VERSION " (SLPv2, RFC 2608)\n";

constexpr std::string_view kDescription =
    "slpd - the SLPv2 service agent of this host and, with net.slp.isDA, a directory agent.\n"
    "It stays in the foreground and logs to the error output; a process manager starts it as it is.";

constexpr std::string_view kFooter =
    "Configuration, each later one over the earlier: /etc/slp.conf (Windows: %windir%\\slp.conf), the file "
    "that\n"
    "OpenSLPConfig names or --config, --property. A line that can't be used is reported with its file and "
    "number.\n"
    "\n"
    "Signals: SIGTERM and SIGINT end slpd, SIGHUP makes it read configuration and registration file anew "
    "(all of it\n"
    "or, when something in it is wrong, nothing) and open its log file anew. Services that programs have "
    "registered\n"
    "stay.\n"
    "\n"
    "On Windows slpd is a service: slpd install enters it with the service manager, with the options that "
    "are given\n"
    "with it (a service does not see the environment of those who use it); kelsd slpd start starts it. "
    "Control code\n"
    "6 (sc control slpd paramchange) does what SIGHUP does.\n"
    "\n"
    "Exit status: 0 ended as asked; 1 could not start, the last line on the error output says why, or "
    "--check has\n"
    "found something wrong; 2 wrong command line; 3 another slpd holds the pid file.\n"
    "\n"
    "Examples:\n"
    "  slpd\n"
    "      Serves every network of this host at port 427; needs the administrator's rights for the port.\n"
    "  slpd --user nobody\n"
    "      The same, but gives these rights up once it has the port.\n"
    "  slpd --property net.slp.interfaces=127.0.0.1 --property net.slp.port=4270 --pidfile /tmp/slpd.pid\n"
    "      Try it out without rights and without any network.\n"
    "  slpd --config /etc/slp/slp.conf --check\n"
    "      What is wrong with a configuration?\n"
    "  slpd --property net.slp.traceMsg=true --property net.slp.traceDrop=true --log slpd.log\n"
    "      Who asks what, and what is answered?\n"
    "  slpd install --config C:\\ProgramData\\slp\\slp.conf --log C:\\ProgramData\\slp\\slpd.log\n"
    "      Windows: the service slpd for this configuration file.\n";

struct VerbRow {
  const char* name;
  Verb verb;
  const char* help;
};

constexpr VerbRow kVerbs[] = {
    {"install", Verb::kInstall,
     "Windows: enter the service slpd with the service manager; it runs with the options given here"},
    {"uninstall", Verb::kUninstall, "Windows: stop and remove the service slpd"},
    {"run", Verb::kRun, "Windows: what the service manager starts; in a console, slpd in the foreground"},
};

std::string PropertyTable() {
  std::ostringstream table;
  table << "Properties for the configuration file and --property, with their defaults:\n";
  for (const PropertyInfo& property : PropertyCatalogue()) {
    table << "\n" << property.key << " = " << property.default_value << "\n    " << property.effect;
    if (property.read_only) {
      table << " (read-only)";
    }
    if (!property.has_effect) {
      table << " (without effect)";
    }
    table << "\n";
  }
  return table.str();
}

// Why a KEY=VALUE can't be used; empty when it can.
std::string FaultOf(const std::string& key, const std::string& value) {
  const PropertyInfo* const property = FindProperty(key);
  if (property == nullptr) {
    return "--property: there is no property " + key + "; slpd --help-properties lists them";
  }
  if (IsReadOnlyProperty(key)) {
    return "--property: " + key + " cannot be set";
  }
  if (!IsAllowed(*property, value)) {
    return "--property: " + key + " must be " + DescribeAllowedValues(*property) + ", not \"" + value + "\"";
  }
  return {};
}

EarlyExit Usage(const std::string& fault) {
  return {ExitStatus::kUsage, "slpd: " + fault + " (slpd --help shows what is possible)\n"};
}

}  // namespace

std::variant<CommandLine, EarlyExit> ParseCommandLine(int argument_count, const char* const* arguments) {
  CLI::App app{std::string(kDescription), "slpd"};
  app.footer(std::string(kFooter));
  CommandLine result;
  std::vector<std::string> properties;
  bool version = false;
  bool help_properties = false;
  app.add_option("--config", result.config_file,
                 "Configuration file, instead of the one that OpenSLPConfig names")
      ->type_name("FILE");
  app.add_option("--regfile", result.registration_file,
                 "File of services to register for programs that know no SLP (default: "
                 "net.slp.serializedRegURL, else "
                 "/etc/slp.reg, on Windows %windir%\\slp.reg, if it exists)")
      ->type_name("FILE");
  app.add_option("--log", result.log_file,
                 "Log into FILE instead of the error output; net.slp.appendLog=false empties it first")
      ->type_name("FILE");
  app.add_option(
         "--pidfile", result.pid_file,
         "File that is locked and holds process id and start time while slpd runs (default: "
         "KELSD_SLPD_PIDFILE, "
         "else on Linux /run/slpd.pid, without privileges slpd.pid in XDG_RUNTIME_DIR; without that none)")
      ->type_name("FILE");
  app.add_option(
         "--user", result.user,
         "Linux, started as the administrator: become this user, of this group alone (default: the user's "
         "own), once "
         "the sockets are open, and keep no right but to bind ports below 1024")
      ->type_name("NAME[:GROUP]");
  app.add_option("--property", properties, "Set a property over all files; may be given many times")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  app.add_flag("--check", result.check,
               "Read configuration and registration file, tell what is wrong, and end: status 0 when "
               "nothing is, else 1");
  app.add_flag("--help-properties", help_properties, "List all properties and end");
  app.add_flag("--version", version, "Show the version and end");
  app.require_subcommand(0, 1);
  for (const VerbRow& row : kVerbs) {
    app.add_subcommand(row.name, row.help)->fallthrough()->callback([&result, &row] {
      result.verb = row.verb;
    });
  }

  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::CallForHelp&) {
    return EarlyExit{ExitStatus::kOk, app.help()};
  } catch (const CLI::ParseError& fault) {
    return Usage(fault.what());
  }
  if (version) {
    return EarlyExit{ExitStatus::kOk, std::string(kVersionText)};
  }
  if (help_properties) {
    return EarlyExit{ExitStatus::kOk, PropertyTable()};
  }
  for (const std::string& property : properties) {
    const auto equals = property.find('=');
    if (equals == std::string::npos) {
      return Usage("--property: KEY=VALUE is wanted, not \"" + property + "\"");
    }
    const std::string key(Trim(std::string_view(property).substr(0, equals)));
    const std::string value(Trim(std::string_view(property).substr(equals + 1)));
    if (const std::string fault = FaultOf(key, value); !fault.empty()) {
      return Usage(fault);
    }
    result.properties.emplace_back(key, value);
  }
  if (!result.user.empty() && (result.user.front() == ':' || result.user.back() == ':')) {
    return Usage("--user: NAME or NAME:GROUP is wanted, not \"" + result.user + "\"");
  }
  if (!result.user.empty() && result.verb != Verb::kNone) {
    return Usage("--user goes without a verb");
  }
  if (result.check && result.verb != Verb::kNone) {
    return Usage("--check goes without a verb");
  }
  return result;
}

}  // namespace slp
