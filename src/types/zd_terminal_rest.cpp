// The terminal's REST interface: its attributes and their typed accessors.
#include "foundation/text.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"
#include "types/attribute_seed.h"
#include "types/attribute_values.h"

namespace kelsd {
namespace {

constexpr AttributeSeed kZDTerminalSeeds[] = {
    {IKelServiceType::ATTR_OPERATION, ""},
    {IKelServiceType::ATTR_SERVER_MODE, ""},
    {IKelServiceType::ATTR_SERVER_ZD_STATUS, ""},
    {IKelServiceType::ATTR_SERVER_NS_STATUS, ""},
    {IKelServiceType::ATTR_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_SERVER_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NETWORKADAPTER, ""},
    {IKelServiceType::ATTR_PARTNER_TERMINAL, ""},
    {IKelServiceType::ATTR_PARTNER_SERVER_NAME, ""},
    {IKelServiceType::ATTR_PARTNER_NS_NAME, ""},
    {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, "FALSE"},
    {IKelServiceType::ATTR_VERSION_ZD, ""},
    {IKelServiceType::ATTR_SERVER_MODE_LAST_STARTED, ""},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, "FALSE"},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES, ""},
};

}  // namespace

CKelServiceTypeZDTerminalREST::CKelServiceTypeZDTerminalREST(const std::string& address,
                                                             unsigned short lifetime)
    : CKelServiceTypeTamroBase(address, lifetime) {
  for (const AttributeSeed& seed : kZDTerminalSeeds) {
    AddAttribute(seed.tag, seed.value);
  }
}

CKelServiceTypeZDTerminalREST::CKelServiceTypeZDTerminalREST(const SKelServiceAttributeSearchResult& result)
    : CKelServiceTypeZDTerminalREST("", kFoundServiceLifetime) {
  CKelServiceTypeZDTerminalREST::Initialize(result);
}

CKelServiceTypeZDTerminalREST::~CKelServiceTypeZDTerminalREST() = default;

std::string CKelServiceTypeZDTerminalREST::GetTypeString() const {
  return "service:terminal.tamro:http";
}

CKelServiceTypeZDTerminalREST::EOperation CKelServiceTypeZDTerminalREST::GetAttrOperation() const {
  return StringToEOperation(GetAttributeValue(ATTR_OPERATION), nullptr);
}

void CKelServiceTypeZDTerminalREST::SetAttrOperation(const EOperation& operation) {
  SetAttributeValue(ATTR_OPERATION, ToString(operation));
}

CKelServiceTypeZDTerminalREST::EServerMode CKelServiceTypeZDTerminalREST::GetAttrServerMode() const {
  return StringToEServerMode(GetAttributeValue(ATTR_SERVER_MODE), nullptr);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerMode(const EServerMode& mode) {
  SetAttributeValue(ATTR_SERVER_MODE, ToString(mode));
}

CKelServiceTypeZDTerminalREST::EServerMode CKelServiceTypeZDTerminalREST::GetAttrServerModeLastStarted()
    const {
  return StringToEServerMode(GetAttributeValue(ATTR_SERVER_MODE_LAST_STARTED), nullptr);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerModeLastStarted(const EServerMode& mode) {
  SetAttributeValue(ATTR_SERVER_MODE_LAST_STARTED, ToString(mode));
}

CKelServiceTypeZDTerminalREST::EExecutableStatus CKelServiceTypeZDTerminalREST::GetAttrServerZDStatus()
    const {
  return StringToEExecutableStatus(GetAttributeValue(ATTR_SERVER_ZD_STATUS), nullptr);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerZDStatus(const EExecutableStatus& status) {
  SetAttributeValue(ATTR_SERVER_ZD_STATUS, ToString(status));
}

CKelServiceTypeZDTerminalREST::EExecutableStatus CKelServiceTypeZDTerminalREST::GetAttrServerNSStatus()
    const {
  return StringToEExecutableStatus(GetAttributeValue(ATTR_SERVER_NS_STATUS), nullptr);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerNSStatus(const EExecutableStatus& status) {
  SetAttributeValue(ATTR_SERVER_NS_STATUS, ToString(status));
}

std::string CKelServiceTypeZDTerminalREST::GetAttrServerName() const {
  return GetAttributeValue(ATTR_SERVER_NAME);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerName(const std::string& name) {
  SetAttributeValue(ATTR_SERVER_NAME, name);
}

std::string CKelServiceTypeZDTerminalREST::GetAttrServerNSName() const {
  return GetAttributeValue(ATTR_SERVER_NS_NAME);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerNSName(const std::string& name) {
  SetAttributeValue(ATTR_SERVER_NS_NAME, name);
}

unsigned short CKelServiceTypeZDTerminalREST::GetAttrServerNSPort() const {
  return TextToPort(GetAttributeValue(ATTR_SERVER_NS_PORT));
}

void CKelServiceTypeZDTerminalREST::SetAttrServerNSPort(const unsigned short& port) {
  SetAttributeValue(ATTR_SERVER_NS_PORT, PortToText(port));
}

std::string CKelServiceTypeZDTerminalREST::GetAttrServerNetworkAdapter() const {
  return GetAttributeValue(ATTR_SERVER_NETWORKADAPTER);
}

void CKelServiceTypeZDTerminalREST::SetAttrServerNetworkAdapter(const std::string& adapter) {
  SetAttributeValue(ATTR_SERVER_NETWORKADAPTER, adapter);
}

std::string CKelServiceTypeZDTerminalREST::GetAttrPartnerTerminal() const {
  return GetAttributeValue(ATTR_PARTNER_TERMINAL);
}

void CKelServiceTypeZDTerminalREST::SetAttrPartnerTerminal(const std::string& terminal) {
  SetAttributeValue(ATTR_PARTNER_TERMINAL, terminal);
}

std::string CKelServiceTypeZDTerminalREST::GetAttrPartnerServerName() const {
  return GetAttributeValue(ATTR_PARTNER_SERVER_NAME);
}

void CKelServiceTypeZDTerminalREST::SetAttrPartnerServerName(const std::string& name) {
  SetAttributeValue(ATTR_PARTNER_SERVER_NAME, name);
}

std::string CKelServiceTypeZDTerminalREST::GetAttrPartnerNSName() const {
  return GetAttributeValue(ATTR_PARTNER_NS_NAME);
}

void CKelServiceTypeZDTerminalREST::SetAttrPartnerNSName(const std::string& name) {
  SetAttributeValue(ATTR_PARTNER_NS_NAME, name);
}

bool CKelServiceTypeZDTerminalREST::GetAttrServerClusterStatus() const {
  return IsTrueText(GetAttributeValue(ATTR_SERVER_CLUSTER_STATUS));
}

void CKelServiceTypeZDTerminalREST::SetAttrServerClusterStatus(const bool& clustered) {
  SetAttributeValue(ATTR_SERVER_CLUSTER_STATUS, BoolToText(clustered));
}

bool CKelServiceTypeZDTerminalREST::GetAttrServicediscoveryIsDa() const {
  return IsTrueText(GetAttributeValue(ATTR_SERVICEDISCOVERY_IS_DA));
}

void CKelServiceTypeZDTerminalREST::SetAttrServicediscoveryIsDa(const bool& is_da) {
  SetAttributeValue(ATTR_SERVICEDISCOVERY_IS_DA, BoolToText(is_da));
}

std::vector<std::string> CKelServiceTypeZDTerminalREST::GetAttrServicediscoveryDaAddresses() const {
  return TextToAddresses(GetAttributeValue(ATTR_SERVICEDISCOVERY_DA_ADDRESSES));
}

void CKelServiceTypeZDTerminalREST::SetAttrServicediscoveryDaAddresses(
    const std::vector<std::string>& addresses) {
  SetAttributeValue(ATTR_SERVICEDISCOVERY_DA_ADDRESSES, AddressesToText(addresses));
}

std::string CKelServiceTypeZDTerminalREST::GetAttrVersionZD() const {
  return GetAttributeValue(ATTR_VERSION_ZD);
}

void CKelServiceTypeZDTerminalREST::SetAttrVersionZD(const std::string& version) {
  SetAttributeValue(ATTR_VERSION_ZD, version);
}

}  // namespace kelsd
