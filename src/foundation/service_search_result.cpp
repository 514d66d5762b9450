// The record of a found service.
#include <locale>
#include <sstream>

#include "kelsd/SKelServiceSearchResult.h"

namespace kelsd {

SKelServiceSearchResult::SKelServiceSearchResult(const std::string& url, unsigned short lifetime,
                                                 const std::string& typeString, const std::string& host,
                                                 unsigned int port, const std::string& netFamily,
                                                 const std::string& servicePart)
    : URL(url),
      Lifetime(lifetime),
      TypeString(typeString),
      Host(host),
      Port(port),
      NetFamily(netFamily),
      ServicePart(servicePart) {}

bool SKelServiceSearchResult::operator==(const SKelServiceSearchResult& other) const {
  return URL == other.URL;
}

bool SKelServiceSearchResult::operator!=(const SKelServiceSearchResult& other) const {
  return !(*this == other);
}

bool SKelServiceSearchResult::operator<(const SKelServiceSearchResult& other) const {
  return URL < other.URL;
}

std::string SKelServiceSearchResult::ToString() {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "URL         = " << URL << "\n"
       << "TypeString  = " << TypeString << "\n"
       << "Host        = " << Host << "\n"
       << "Port        = " << Port << "\n"
       << "ServicePart = " << ServicePart << "\n"
       << "Lifetime    = " << Lifetime << "\n"
       << "NetFamily   = " << NetFamily << "\n";
  return text.str();
}

}  // namespace kelsd
