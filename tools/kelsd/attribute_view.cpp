#include "attribute_view.h"

#include <functional>
#include <map>

#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelServiceTypeTamroBase;
using kelsd::CKelServiceTypeZDREST;
using kelsd::CKelServiceTypeZDTerminalREST;
using kelsd::IKelServiceType;

template <typename Service>
using TypedGetters = std::map<IKelServiceType::EAttr, std::function<nlohmann::json(const Service&)>>;

const TypedGetters<CKelServiceTypeTamroBase>& BaseGetters() {
  static const TypedGetters<CKelServiceTypeTamroBase> getters = {
      {IKelServiceType::ATTR_IP_ADDRESSES, [](const auto& service) { return service.GetAttrIPAddresses(); }},
  };
  return getters;
}

const TypedGetters<CKelServiceTypeZDREST>& ServerGetters() {
  static const TypedGetters<CKelServiceTypeZDREST> getters = {
      {IKelServiceType::ATTR_SERVER_NS_PORT,
       [](const auto& service) { return service.GetAttrServerNSPort(); }},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT,
       [](const auto& service) { return service.GetAttrConfiguredServerNSPort(); }},
      {IKelServiceType::ATTR_SERVER_NS_IPS,
       [](const auto& service) { return service.GetAttrServerNSIpAddresses(); }},
  };
  return getters;
}

const TypedGetters<CKelServiceTypeZDTerminalREST>& TerminalGetters() {
  static const TypedGetters<CKelServiceTypeZDTerminalREST> getters = {
      {IKelServiceType::ATTR_SERVER_NS_PORT,
       [](const auto& service) { return service.GetAttrServerNSPort(); }},
      {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS,
       [](const auto& service) { return service.GetAttrServerClusterStatus(); }},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA,
       [](const auto& service) { return service.GetAttrServicediscoveryIsDa(); }},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES,
       [](const auto& service) { return service.GetAttrServicediscoveryDaAddresses(); }},
  };
  return getters;
}

// Whether `service` is a `Service` that reads `tag` as something else than text.
template <typename Service>
bool ReadTyped(nlohmann::json& value, const TypedGetters<Service>& getters,
               const CKelServiceTypeTamroBase& service, IKelServiceType::EAttr tag) {
  const auto* typed = dynamic_cast<const Service*>(&service);
  const auto getter = getters.find(tag);
  if (typed == nullptr || getter == getters.end()) {
    return false;
  }
  value = getter->second(*typed);
  return true;
}

}  // namespace

std::vector<std::pair<std::string, nlohmann::json>> TypedAttributes(
    const CKelServiceTypeTamroBase& service, const std::vector<IKelServiceType::EAttr>& tags) {
  std::vector<std::pair<std::string, nlohmann::json>> attributes;
  attributes.reserve(tags.size());
  for (const IKelServiceType::EAttr tag : tags) {
    nlohmann::json value;
    if (!ReadTyped(value, BaseGetters(), service, tag) && !ReadTyped(value, ServerGetters(), service, tag) &&
        !ReadTyped(value, TerminalGetters(), service, tag)) {
      value = service.GetAttributeValue(tag);
    }
    attributes.emplace_back(IKelServiceType::ToString(tag), std::move(value));
  }
  return attributes;
}

std::vector<std::pair<std::string, std::string>> RawAttributes(const std::string& attribute_list) {
  std::vector<std::pair<std::string, std::string>> attributes;
  std::size_t at = 0;
  while (at < attribute_list.size()) {
    const bool bracketed = attribute_list[at] == '(';
    // Brackets inside values are escaped, so the next ')' ends the element.
    const std::size_t end = bracketed ? attribute_list.find(')', at) : attribute_list.find(',', at);
    const std::size_t begin = bracketed ? at + 1 : at;
    const std::string element = attribute_list.substr(begin, end == std::string::npos ? end : end - begin);
    if (!element.empty()) {
      const std::size_t equals = bracketed ? element.find('=') : std::string::npos;
      attributes.emplace_back(element.substr(0, equals),
                              equals == std::string::npos ? std::string() : element.substr(equals + 1));
    }
    if (end == std::string::npos) {
      break;
    }
    at = end + 1;
    if (bracketed && at < attribute_list.size() && attribute_list[at] == ',') {
      ++at;
    }
  }
  return attributes;
}

std::string ToText(const nlohmann::json& value) {
  if (value.is_string()) {
    return value.get<std::string>();
  }
  if (value.is_array()) {
    std::string text;
    for (const nlohmann::json& element : value) {
      text += (text.empty() ? "" : ", ") + ToText(element);
    }
    return text;
  }
  return value.dump();
}

}  // namespace kelsd_tool
