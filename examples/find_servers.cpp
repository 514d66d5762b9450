// Finds the ZD servers on the network and prints what each says of itself.
#include <iostream>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelServiceTypeZDREST.h"

int main() {
  if (const kelsd::SResult ready = kelsd::CKelSLP::Initialize(); ready.IsNotOk()) {
    std::cerr << ready.ToString() << '\n';
    return 1;
  }

  const kelsd::CKelServiceTypeZDREST any_server("", 300);
  std::vector<kelsd::SKelServiceSearchResult> servers;
  if (const kelsd::SResult found = kelsd::CKelSLPClient::FindServices(servers, any_server, "", "");
      found.IsNotOk()) {
    std::cerr << found.ToString() << '\n';
    return 1;
  }

  for (const kelsd::SKelServiceSearchResult& server : servers) {
    kelsd::SKelServiceAttributeSearchResult attributes;
    const kelsd::SResult read = kelsd::CKelSLPClient::FindAttributes(
        attributes, server.URL, any_server.GetAttributeTags(), any_server.GetScopes(), "");
    if (read.IsNotOk()) {
      std::cerr << server.URL << ": " << read.ToString() << '\n';
      continue;
    }
    const kelsd::CKelServiceTypeZDREST details(attributes);
    std::cout << server.URL << ": " << details.GetAttrServerName() << ", version " << details.GetAttrVersion()
              << ", naming service port " << details.GetAttrServerNSPort() << '\n';
  }
  return servers.empty() ? 2 : 0;
}
