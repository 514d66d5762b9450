#include "integration/library/library_fixture.h"

#include <memory>

#include "support/fake_platform/environment.h"

namespace kelsd::integration {

std::string RegistrationFile(const std::vector<Announced>& services) {
  std::string file;
  for (const Announced& service : services) {
    file += service.url + ",en,65535\nscopes=" + service.scope + "\n";
    for (const std::string& attribute : service.attributes) {
      file += attribute + "\n";
    }
    file += "\n";
  }
  return file;
}

std::vector<Announced> FamilyServices() {
  return {
      {"service:zdrest.tamro:http://127.0.0.1:8080",
       "tamro",
       {"x-version=4.2", "x-ip-addresses=10.0.0.1\\2C10.0.0.2\\2C10.0.0.3", "x-server-name=srv1",
        "x-server-ns-name=ns1", "x-server-ns-port=8081", "x-server-connection-status=connected",
        "x-server-ns-ips=10.0.0.9\\2C10.0.0.8"}},
      {"service:zdrest.tamro:http://127.0.0.1:8090",
       "tamro",
       {"x-version=4.1", "x-ip-addresses=10.0.0.22", "x-server-name=srv2", "x-server-ns-name=ns2"}},
      {"service:terminal.tamro:http://127.0.0.1:8070",
       "tamro",
       {"x-version=4.2", "x-ip-addresses=10.0.0.1", "x-server-name=srv1", "x-server-mode=MAIN",
        "x-operation=SERVER", "x-server-cluster-status=TRUE"}},
      {"service:servicehost.tamro:render://127.0.0.1:9000", "tamro", {"x-servicehost-mode=batch"}},
      {"service:servicehost.tamro:print://127.0.0.1:9001", "lab", {"x-servicehost-mode=interactive"}},
  };
}

void LibraryTest::Serve(const std::vector<Announced>& services) {
  slp::support::SlpdOptions options;
  options.configuration = "net.slp.useScopes = TAMRO,LAB\n";
  options.registrations = RegistrationFile(services);
  daemon_ = std::make_unique<slp::support::SlpdProcess>(options);
  ASSERT_TRUE(daemon_->Running()) << daemon_->Log();
  SetEnvironment("OpenSLPConfig", daemon_->configuration_file());
  ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
}

void LibraryTest::ServeNothing() {
  Serve({});
  ASSERT_EQ(daemon_->Stop(), 0);
}

std::vector<std::string> Urls(const std::vector<SKelServiceSearchResult>& services) {
  std::vector<std::string> urls;
  urls.reserve(services.size());
  for (const SKelServiceSearchResult& service : services) {
    urls.push_back(service.URL);
  }
  return urls;
}

}  // namespace kelsd::integration
