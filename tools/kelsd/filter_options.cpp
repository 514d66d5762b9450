#include "filter_options.h"

#include "kelsd/IKelServiceType.h"

namespace kelsd_tool {

using kelsd::IKelServiceType;

void FilterOptions::AddTo(CLI::App& verb) {
  verb.add_option("--filter", filter, "LDAPv3 filter over the attributes, e.g. \"(x-version=4.*)\"")
      ->type_name("F")
      ->group("Narrowing");
  verb.add_option("--ip", ips, "services whose x-ip-addresses hold this address (several: any of them)")
      ->type_name("ADDRESS")
      ->allow_extra_args(false)
      ->group("Narrowing");
  verb.add_option("--ns", ns_names,
                  "services at this naming service, by x-server-ns-name (several: any of them)")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->group("Narrowing");
  verb.add_option("--server-name", server_name, "services with this x-server-name; goes with --ip or --ns")
      ->type_name("NAME")
      ->group("Narrowing");
}

bool FilterOptions::Build(std::string& text, std::string& problem) const {
  const bool built = !ips.empty() || !ns_names.empty() || !server_name.empty();
  if (!built) {
    text = filter;
    return true;
  }
  if (!filter.empty()) {
    problem = "--filter does not go with --ip, --ns or --server-name: put all conditions into the filter";
    return false;
  }
  if (!ips.empty() && !ns_names.empty()) {
    problem =
        "--ip and --ns do not go together: use --filter, e.g. "
        "\"(&(x-server-ns-name=ns1)(x-server-name=srv1))\"";
    return false;
  }
  if (ips.empty() && ns_names.empty()) {
    problem = "--server-name goes with --ip or --ns; for the name alone use --filter \"(x-server-name=" +
              server_name + ")\"";
    return false;
  }
  if ((ips.size() > 1 || ns_names.size() > 1) && server_name.empty()) {
    problem = "several addresses or naming services go with --server-name; without it, name one";
    return false;
  }

  if (server_name.empty()) {
    text = ips.empty() ? IKelServiceType::GetNamingServiceSearchFilter(ns_names.front())
                       : IKelServiceType::GetIpAddressesSearchFilter(ips.front());
  } else if (ips.size() == 1) {
    text = IKelServiceType::GetNSIpServerNameSearchFilter(ips.front(), server_name);
  } else if (ips.size() > 1) {
    text = IKelServiceType::GetIpsServerNameSearchFilter(ips, server_name);
  } else if (ns_names.size() == 1) {
    text = IKelServiceType::GetNsNameServerNameSearchFilter(ns_names.front(), server_name);
  } else {
    text = IKelServiceType::GetNSIpsServerNameSearchFilter(ns_names, server_name);
  }
  return true;
}

}  // namespace kelsd_tool
