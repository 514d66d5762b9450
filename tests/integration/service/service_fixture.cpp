#include "integration/service/service_fixture.h"

#include <algorithm>
#include <climits>
#include <fstream>
#include <iterator>

#include "support/wait_until.h"

namespace kelsd::integration {

void ServiceTest::TearDown() {
  EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
}

void ServiceTest::WriteConfiguration(const std::string& further_lines) const {
  std::ofstream(File("slp.conf"), std::ios::binary)
      << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << port_ << "\n"
      << further_lines;
}

std::vector<std::string> Find(const std::string& type, const std::vector<std::string>& scopes) {
  std::vector<SKelServiceSearchResult> found;
  const SResult result = CKelSLPClient::FindServices(found, type, scopes, "", "127.0.0.1");
  if (result.IsNotOk()) {
    return {result.ToString()};
  }
  std::vector<std::string> urls;
  std::transform(found.begin(), found.end(), std::back_inserter(urls),
                 [](const SKelServiceSearchResult& service) { return service.URL; });
  std::sort(urls.begin(), urls.end());
  return urls;
}

bool WaitUntil(milliseconds limit, const std::function<bool()>& done) {
  return support::WaitUntil(done, limit);
}

}  // namespace kelsd::integration
