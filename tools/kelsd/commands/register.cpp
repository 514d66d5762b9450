// kelsd register and kelsd deregister: announcing a service for as long as the tool runs, and withdrawing
// one.
#include <atomic>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "kelsd/CKelSLPService.h"
#include "kelsd/CKelServiceTypeServiceHost.h"
#include "progress.h"
#include "search_session.h"
#include "service_kind.h"
#include "stop_request.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPService;
using kelsd::IKelServiceType;
using kelsd::SResult;

struct RegisterOptions {
  SearchSession session;
  std::string service;
  std::string address;
  std::vector<std::string> attributes;
  std::vector<std::string> scopes;
  unsigned short lifetime = 300;
};

struct DeregisterOptions {
  SearchSession session;
  std::string url;
};

struct Registration {
  std::string url;
  std::map<std::string, std::string> attributes;
  std::vector<std::string> scopes;
};

constexpr const char* kRegisterExamples = R"help(Examples:
  kelsd register zdrest --address 10.0.0.5:8080 --attr x-version=4.2 --attr x-server-name=srv1
  kelsd register servicehost:render --address 10.0.0.7:9000 --lifetime 60
  kelsd register service:printer.lab:lpr://10.0.0.9 --scope DEFAULT --attr color=true

Stays and renews the registration until Ctrl-C (or SIGTERM), then deregisters. Starts slpd when it does not
run; a scope that slpd does not serve is added to the configuration file, and slpd is restarted.
Exit status: 0 registered and deregistered, 2 usage, 3 failure, also when the service was given up.)help";

constexpr const char* kDeregisterExamples = R"help(Examples:
  kelsd deregister service:zdrest.tamro:http://10.0.0.5:8080

A service whose application still runs comes back when that application renews it. Starts slpd when it does
not run.
Exit status: 0 deregistered, 2 usage, 3 failure.)help";

// The URL, and for a type of the family all its attributes and its scope where the user gives none. False,
// with `problem` set, when the command line makes no sense.
bool BuildRegistration(const RegisterOptions& options, Registration& registration, std::string& problem) {
  const bool is_url = options.service.find("://") != std::string::npos;
  if (is_url != options.address.empty()) {
    problem = is_url ? "--address goes with a type, not with a whole URL"
                     : "say where the service is: --address HOST:PORT with the type, or give a whole URL";
    return false;
  }
  const std::string type = is_url ? options.service.substr(0, options.service.find("://"))
                                  : ParseServiceKind(options.service).type;
  const std::string service_host = kelsd::CKelServiceTypeServiceHost::GetAbstractTypeString();
  if (!is_url && (type == service_host || type == service_host + ":")) {
    problem = "say which service host it is: servicehost:CONCRETE, e.g. servicehost:render";
    return false;
  }
  registration.url = is_url ? options.service : type + "://" + options.address;
  registration.scopes = options.scopes;
  if (const auto service = MakeFamilyService(type, registration.url)) {
    for (const auto& [tag, value] : service->GetAttributes()) {
      registration.attributes[IKelServiceType::ToString(tag)] = value;
    }
    if (options.scopes.empty()) {
      registration.scopes = service->GetScopes();
    }
  }
  for (const std::string& attribute : options.attributes) {
    const std::size_t equals = attribute.find('=');
    if (equals == std::string::npos || equals == 0) {
      problem = "--attr takes TAG=VALUE, not '" + attribute + "'";
      return false;
    }
    registration.attributes[attribute.substr(0, equals)] = attribute.substr(equals + 1);
  }
  return true;
}

void Say(Console& console, bool json, const std::string& event, const std::string& url,
         const std::string& line) {
  if (json) {
    console.PrintEvent({{"event", event}, {"url", url}});
  } else {
    console.PrintLine(line);
  }
}

ExitStatus Withdraw(const std::string& url, Console& console, bool json) {
  SResult deregistered;
  {
    const Progress progress("Deregistering " + url);
    deregistered = CKelSLPService::DeregisterService(url);
  }
  if (deregistered.IsNotOk()) {
    return console.Fail(deregistered);
  }
  Say(console, json, "deregistered", url, "Deregistered " + url + ".");
  return kFound;
}

// 1. Requests to end are taken from here on, so that none leaves the service behind.
// 2. Register; the library renews from now on.
// 3. Stay until a request, or until the library has given the service up.
// 4. Deregister.
ExitStatus Register(RegisterOptions& options, Console& console) {
  Registration service;
  std::string problem;
  if (!BuildRegistration(options, service, problem)) {
    return console.RejectUsage(problem);
  }
  // Shared, as what follows: a call that is under way goes on after the callback has been taken back.
  const auto stop = std::make_shared<StopRequest>();
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }
  const auto given_up = std::make_shared<std::atomic<bool>>(false);
  CKelSLPService::SetReRegistrationFailedCallback(
      [given_up, stop, &console](const std::string& url, const SResult& reason) {
        console.PrintError(url + " could not be renewed and is given up.");
        console.PrintError(reason);
        given_up->store(true);
        stop->Raise();
      });
  const bool json = options.session.json();
  SResult registered;
  {
    const Progress progress("Registering " + service.url);
    registered =
        CKelSLPService::RegisterService(service.url, options.lifetime, service.attributes, service.scopes);
  }
  if (registered.IsNotOk()) {
    CKelSLPService::SetReRegistrationFailedCallback({});
    return console.Fail(registered);
  }
  Say(console, json, "registered", service.url, "Registered " + service.url + ". Ctrl-C deregisters it.");
  stop->Wait();
  CKelSLPService::SetReRegistrationFailedCallback({});
  if (given_up->load()) {
    return kFailure;
  }
  return Withdraw(service.url, console, json);
}

ExitStatus Deregister(DeregisterOptions& options, Console& console) {
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }
  return Withdraw(options.url, console, options.session.json());
}

}  // namespace

void AddRegister(CLI::App& app, Console& console, ExitStatus& status) {
  auto options = std::make_shared<RegisterOptions>();
  CLI::App* verb = app.add_subcommand("register", "Announce a service until Ctrl-C");
  verb->add_option(
          "SERVICE", options->service,
          "zdrest, terminal, servicehost:CONCRETE or any SLP service type, with --address; or a whole "
          "service URL")
      ->required();
  verb->add_option("--address", options->address, "where the service is")->type_name("HOST:PORT");
  verb->add_option("--attr", options->attributes, "attribute of the service, may be repeated")
      ->type_name("TAG=VALUE")
      ->allow_extra_args(false);
  verb->add_option(
          "--scope", options->scopes,
          "scope to be found in, may be repeated (default: the family's scope for its own types, else "
          "the configured scopes)")
      ->type_name("S")
      ->allow_extra_args(false);
  verb->add_option("--lifetime", options->lifetime, "seconds that the registration lasts without renewal")
      ->type_name("N")
      ->check(CLI::Range(1, 65535))
      ->capture_default_str();
  options->session.AddCommonOptions(*verb);
  verb->footer(kRegisterExamples);
  verb->callback([options, &console, &status] { status = Register(*options, console); });
}

void AddDeregister(CLI::App& app, Console& console, ExitStatus& status) {
  auto options = std::make_shared<DeregisterOptions>();
  CLI::App* verb = app.add_subcommand("deregister", "Withdraw a service");
  verb->add_option("URL", options->url, "service URL as 'kelsd find' prints it")->required();
  options->session.AddCommonOptions(*verb);
  verb->footer(kDeregisterExamples);
  verb->callback([options, &console, &status] { status = Deregister(*options, console); });
}

}  // namespace kelsd_tool
