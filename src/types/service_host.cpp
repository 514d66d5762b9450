// The service host: its type string and its accessors, all plain text.
#include "kelsd/CKelServiceTypeServiceHost.h"

namespace kelsd {

CKelServiceTypeServiceHost::CKelServiceTypeServiceHost(const std::string& concreteType,
                                                       const std::string& address, unsigned short lifetime)
    : CKelServiceTypeTamroBase(address, lifetime), concrete_type_(concreteType) {
  for (const EAttr tag : {ATTR_SERVICEHOST_SDK_VERSION, ATTR_SERVICEHOST_PRODUCT_NAME, ATTR_SERVICEHOST_MODE,
                          ATTR_SERVICEHOST_PLUGIN_NAME, ATTR_SERVICEHOST_INSTANCE_NAME}) {
    AddAttribute(tag, "");
  }
}

CKelServiceTypeServiceHost::~CKelServiceTypeServiceHost() = default;

std::string CKelServiceTypeServiceHost::GetAbstractTypeString() {
  return "service:servicehost.tamro";
}

std::string CKelServiceTypeServiceHost::GetTypeString() const {
  return GetAbstractTypeString() + ":" + concrete_type_;
}

std::string CKelServiceTypeServiceHost::GetConcreteType() const {
  return concrete_type_;
}

void CKelServiceTypeServiceHost::SetConcreteType(const std::string& concreteType) {
  concrete_type_ = concreteType;
}

std::map<std::string, std::string> CKelServiceTypeServiceHost::GetAttributeMap() const {
  std::map<std::string, std::string> values;
  for (const auto& [tag, value] : GetAttributes()) {
    values.emplace(ToString(tag), value);
  }
  return values;
}

std::string CKelServiceTypeServiceHost::GetAttrSDKVersion() const {
  return GetAttributeValue(ATTR_SERVICEHOST_SDK_VERSION);
}

void CKelServiceTypeServiceHost::SetAttrSDKVersion(const std::string& version) {
  SetAttributeValue(ATTR_SERVICEHOST_SDK_VERSION, version);
}

std::string CKelServiceTypeServiceHost::GetAttrProductName() const {
  return GetAttributeValue(ATTR_SERVICEHOST_PRODUCT_NAME);
}

void CKelServiceTypeServiceHost::SetAttrProductName(const std::string& name) {
  SetAttributeValue(ATTR_SERVICEHOST_PRODUCT_NAME, name);
}

std::string CKelServiceTypeServiceHost::GetAttrMode() const {
  return GetAttributeValue(ATTR_SERVICEHOST_MODE);
}

void CKelServiceTypeServiceHost::SetAttrMode(const std::string& mode) {
  SetAttributeValue(ATTR_SERVICEHOST_MODE, mode);
}

std::string CKelServiceTypeServiceHost::GetAttrPluginName() const {
  return GetAttributeValue(ATTR_SERVICEHOST_PLUGIN_NAME);
}

void CKelServiceTypeServiceHost::SetAttrPluginName(const std::string& name) {
  SetAttributeValue(ATTR_SERVICEHOST_PLUGIN_NAME, name);
}

std::string CKelServiceTypeServiceHost::GetAttrInstanceName() const {
  return GetAttributeValue(ATTR_SERVICEHOST_INSTANCE_NAME);
}

void CKelServiceTypeServiceHost::SetAttrInstanceName(const std::string& name) {
  SetAttributeValue(ATTR_SERVICEHOST_INSTANCE_NAME, name);
}

}  // namespace kelsd
