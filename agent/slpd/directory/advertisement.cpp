#include "slpd/directory/advertisement.h"

#include "text/ip_address.h"
#include "text/string_list.h"

namespace slp {

DaAdvert MakeAdvertisement(const AgentSettings& settings, const std::string& address) {
  return {.error = Error::kOk,
          .boot_timestamp = settings.boot_timestamp,
          .url = "service:directory-agent://" + UrlHost(address),
          .scopes = JoinStringList(settings.scopes),
          .attributes = settings.directory_agent_attributes,
          .spi = {},
          .authentication = {}};
}

Message MakeUnsolicitedAdvertisement(const AgentSettings& settings, const std::string& address,
                                     bool leaving) {
  DaAdvert advert = MakeAdvertisement(settings, address);
  if (leaving) {
    advert.boot_timestamp = 0;
  }
  return {.header = {.xid = 0, .language = settings.language, .extensions = {}}, .body = std::move(advert)};
}

}  // namespace slp
