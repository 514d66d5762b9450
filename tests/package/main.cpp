#include <iostream>

#include "kelsd/CKelSLP.h"

int main() {
  kelsd::SKelServiceSearchResult parts;
  const kelsd::SResult parsed =
      kelsd::CKelSLP::ParseServiceURL(parts, "service:zdrest.tamro:http://10.0.0.5:8080/api");
  std::cout << parsed.ToString() << '\n'
            << parts.Host << ' ' << parts.Port << ' ' << parts.ServicePart << '\n';
  return parsed.IsOk() && parts.Port == 8080 ? 0 : 1;
}
