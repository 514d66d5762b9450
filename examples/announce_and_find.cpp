// Announces one service of each type of the family, finds them again, changes one, and withdraws them. The
// library starts slpd when it does not run, and stops it here only in that case; a failure ends the program
// and leaves slpd running. It expects no other services of these types on this host.
//
// Needs the environment variable OpenSLPConfig, which names the configuration file of slpd; the scope of the
// services is added to it for good, and slpd is restarted then.
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "kelsd/CKelServiceTypeServiceHost.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace {

constexpr unsigned short kLifetime = 300;
constexpr const char* kThisHost = "127.0.0.1";

// Ends the program at the first failure; an application would go on without service discovery.
void Check(const kelsd::SResult& result, const std::string& what) {
  if (result.IsNotOk()) {
    std::cerr << what << ": " << result.ToString() << '\n';
    std::exit(1);
  }
}

// How many services of the type there are on this host; prints them.
std::size_t Find(const kelsd::IKelServiceType& type, const std::string& filter = "") {
  std::vector<kelsd::SKelServiceSearchResult> found;
  Check(kelsd::CKelSLPClient::FindServices(found, type, filter, kThisHost), "Searching");
  std::cout << "  " << type.GetTypeString() << ' ' << filter << ": " << found.size() << '\n';
  for (const kelsd::SKelServiceSearchResult& service : found) {
    std::cout << "    " << service.URL << " for " << service.Lifetime << " s\n";
  }
  return found.size();
}

kelsd::CKelServiceTypeZDREST Read(const kelsd::IKelServiceType& type) {
  kelsd::SKelServiceAttributeSearchResult attributes;
  Check(kelsd::CKelSLPClient::FindAttributes(attributes, type, kThisHost), "Reading attributes");
  return kelsd::CKelServiceTypeZDREST(attributes);
}

}  // namespace

int main() {
  Check(kelsd::CKelSLP::Initialize(), "Initialising");
  bool was_running = false;
  Check(kelsd::CKelSLPService::IsSLPDRunning(was_running), "Asking for slpd");

  kelsd::CKelServiceTypeZDREST server("127.0.0.1:8080", kLifetime);
  server.SetAttrVersion("4.2");
  server.SetAttrServerName("srv1");
  server.SetAttrServerNSPort(8081);
  server.SetAttrIPAddresses({"10.0.0.5", "127.0.0.1"});
  kelsd::CKelServiceTypeZDTerminalREST terminal("127.0.0.1:8070", kLifetime);
  terminal.SetAttrServerClusterStatus(true);
  kelsd::CKelServiceTypeServiceHost host("render", "127.0.0.1:9000", kLifetime);
  host.SetAttrProductName("Render Farm");

  const std::vector<const kelsd::IKelServiceType*> services = {&server, &terminal, &host};
  for (const kelsd::IKelServiceType* service : services) {
    Check(kelsd::CKelSLPService::RegisterService(*service), "Registering");
    std::cout << "registered " << service->GetServiceURL() << '\n';
  }

  std::cout << "found\n";
  std::size_t found = 0;
  for (const kelsd::IKelServiceType* service : services) {
    found += Find(*service);
  }
  const kelsd::CKelServiceTypeZDREST before = Read(server);
  std::cout << "read  " << before.GetAttrServerName() << ", version " << before.GetAttrVersion()
            << ", naming service port " << before.GetAttrServerNSPort() << '\n';

  server.SetAttrVersion("4.3");
  Check(kelsd::CKelSLPService::RegisterService(server), "Registering the change");
  std::cout << "changed the version\n";
  const std::size_t changed = Find(server, "(x-version=4.3)");
  const bool read_change = Read(server).GetAttrVersion() == "4.3";

  for (const kelsd::IKelServiceType* service : services) {
    Check(kelsd::CKelSLPService::DeregisterService(*service), "Deregistering");
  }
  std::cout << "deregistered\n";
  std::size_t left = 0;
  for (const kelsd::IKelServiceType* service : services) {
    left += Find(*service);
  }
  if (!was_running) {
    Check(kelsd::CKelSLPService::StopSLPD(), "Stopping slpd");
  }
  return found == services.size() && changed == 1 && read_change && left == 0 ? 0 : 1;
}
