// The search filters. Every "and" and "or" joins exactly two operands, nested to the left.
#include "kelsd/IKelServiceType.h"

namespace kelsd {
namespace {

std::string Comparison(IKelServiceType::EAttr tag, const std::string& value) {
  return "(" + IKelServiceType::ToString(tag) + "=" + value + ")";
}

std::string ServerName(const std::string& name) {
  return Comparison(IKelServiceType::ATTR_SERVER_NAME, name);
}

std::string Either(const std::string& left, const std::string& right) {
  return "(|" + left + right + ")";
}

std::string Both(const std::string& left, const std::string& right) {
  return "(&" + left + right + ")";
}

// Any of the filters that `filter_of` makes of the elements, nested to the left; nothing for an empty list.
std::string AnyOf(const std::vector<std::string>& elements, std::string (*filter_of)(const std::string&)) {
  std::string any;
  for (const std::string& element : elements) {
    any = any.empty() ? filter_of(element) : Either(any, filter_of(element));
  }
  return any;
}

}  // namespace

std::string IKelServiceType::GetIpAddressesSearchFilter(const std::string& ip) {
  // The attribute is one text that lists the addresses with commas between them: the address is all of it, or
  // stands in the middle, at the end or at the beginning.
  const std::string whole = Comparison(ATTR_IP_ADDRESSES, ip);
  const std::string middle = Comparison(ATTR_IP_ADDRESSES, "*," + ip + ",*");
  const std::string last = Comparison(ATTR_IP_ADDRESSES, "*," + ip);
  const std::string first = Comparison(ATTR_IP_ADDRESSES, ip + ",*");
  return Either(Either(Either(whole, middle), last), first);
}

// The list by value is part of the interface.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::string IKelServiceType::GetIpsServerNameSearchFilter(std::vector<std::string> ips,
                                                          const std::string& serverName) {
  return Both(AnyOf(ips, &GetIpAddressesSearchFilter), ServerName(serverName));
}

std::string IKelServiceType::GetNSIpServerNameSearchFilter(const std::string& ip,
                                                           const std::string& serverName) {
  return Both(GetIpAddressesSearchFilter(ip), ServerName(serverName));
}

// The list by value is part of the interface.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::string IKelServiceType::GetNSIpsServerNameSearchFilter(std::vector<std::string> nsNames,
                                                            const std::string& serverName) {
  return Both(AnyOf(nsNames, &GetNamingServiceSearchFilter), ServerName(serverName));
}

std::string IKelServiceType::GetNamingServiceSearchFilter(const std::string& nsName) {
  return Comparison(ATTR_SERVER_NS_NAME, nsName);
}

std::string IKelServiceType::GetNsNameServerNameSearchFilter(const std::string& nsName,
                                                             const std::string& serverName) {
  return Both(GetNamingServiceSearchFilter(nsName), ServerName(serverName));
}

}  // namespace kelsd
