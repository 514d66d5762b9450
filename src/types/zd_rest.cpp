// The ZD server's REST interface: its attributes and their typed accessors.
#include "foundation/text_table.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "types/attribute_seed.h"
#include "types/attribute_values.h"

namespace kelsd {
namespace {

constexpr AttributeSeed kZDSeeds[] = {
    {IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, "unknown"},
    {IKelServiceType::ATTR_SERVER_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_SERVER_NS_IPS, ""},
    {IKelServiceType::ATTR_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NAME, ""},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_NAME, ""},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, "0"},
    {IKelServiceType::ATTR_VERSION_ZD, ""},
    {IKelServiceType::ATTR_SERVER_TERMINAL, ""},
};

using ConnectionStatusTable = TextTable<CKelServiceTypeZDREST::EZDConnectionStatus>;

const ConnectionStatusTable& ConnectionStatuses() {
  static const auto& table = *new ConnectionStatusTable({
      {CKelServiceTypeZDREST::unknown, "unknown"},
      {CKelServiceTypeZDREST::connected, "connected"},
      {CKelServiceTypeZDREST::connection_lost, "connection_lost"},
  });
  return table;
}

[[maybe_unused]] const auto& connection_statuses_built_at_load = ConnectionStatuses();

}  // namespace

CKelServiceTypeZDREST::CKelServiceTypeZDREST(const std::string& address, unsigned short lifetime)
    : CKelServiceTypeTamroBase(address, lifetime) {
  for (const AttributeSeed& seed : kZDSeeds) {
    AddAttribute(seed.tag, seed.value);
  }
}

CKelServiceTypeZDREST::CKelServiceTypeZDREST(const SKelServiceAttributeSearchResult& result)
    : CKelServiceTypeZDREST("", kFoundServiceLifetime) {
  CKelServiceTypeZDREST::Initialize(result);
}

CKelServiceTypeZDREST::~CKelServiceTypeZDREST() = default;

std::string CKelServiceTypeZDREST::GetTypeString() const {
  return "service:zdrest.tamro:http";
}

std::string CKelServiceTypeZDREST::GetAttrServerName() const {
  return GetAttributeValue(ATTR_SERVER_NAME);
}

void CKelServiceTypeZDREST::SetAttrServerName(const std::string& name) {
  SetAttributeValue(ATTR_SERVER_NAME, name);
}

std::string CKelServiceTypeZDREST::GetAttrServerNSName() const {
  return GetAttributeValue(ATTR_SERVER_NS_NAME);
}

void CKelServiceTypeZDREST::SetAttrServerNSName(const std::string& name) {
  SetAttributeValue(ATTR_SERVER_NS_NAME, name);
}

unsigned short CKelServiceTypeZDREST::GetAttrServerNSPort() const {
  return TextToPort(GetAttributeValue(ATTR_SERVER_NS_PORT));
}

void CKelServiceTypeZDREST::SetAttrServerNSPort(const unsigned short& port) {
  SetAttributeValue(ATTR_SERVER_NS_PORT, PortToText(port));
}

std::vector<std::string> CKelServiceTypeZDREST::GetAttrServerNSIpAddresses() const {
  return TextToAddresses(GetAttributeValue(ATTR_SERVER_NS_IPS));
}

void CKelServiceTypeZDREST::SetAttrServerNSIpAddresses(const std::vector<std::string>& addresses) {
  SetAttributeValue(ATTR_SERVER_NS_IPS, AddressesToText(addresses));
}

std::string CKelServiceTypeZDREST::GetAttrConfiguredServerName() const {
  return GetAttributeValue(ATTR_CONFIGURED_SERVER_NAME);
}

void CKelServiceTypeZDREST::SetAttrConfiguredServerName(const std::string& name) {
  SetAttributeValue(ATTR_CONFIGURED_SERVER_NAME, name);
}

std::string CKelServiceTypeZDREST::GetAttrConfiguredServerNSName() const {
  return GetAttributeValue(ATTR_CONFIGURED_SERVER_NS_NAME);
}

void CKelServiceTypeZDREST::SetAttrConfiguredServerNSName(const std::string& name) {
  SetAttributeValue(ATTR_CONFIGURED_SERVER_NS_NAME, name);
}

unsigned short CKelServiceTypeZDREST::GetAttrConfiguredServerNSPort() const {
  return TextToPort(GetAttributeValue(ATTR_CONFIGURED_SERVER_NS_PORT));
}

void CKelServiceTypeZDREST::SetAttrConfiguredServerNSPort(const unsigned short& port) {
  SetAttributeValue(ATTR_CONFIGURED_SERVER_NS_PORT, PortToText(port));
}

std::string CKelServiceTypeZDREST::GetAttrTerminal() const {
  return GetAttributeValue(ATTR_SERVER_TERMINAL);
}

void CKelServiceTypeZDREST::SetAttrTerminal(const std::string& terminal) {
  SetAttributeValue(ATTR_SERVER_TERMINAL, terminal);
}

std::string CKelServiceTypeZDREST::GetAttrVersionZD() const {
  return GetAttributeValue(ATTR_VERSION_ZD);
}

void CKelServiceTypeZDREST::SetAttrVersionZD(const std::string& version) {
  SetAttributeValue(ATTR_VERSION_ZD, version);
}

CKelServiceTypeZDREST::EZDConnectionStatus CKelServiceTypeZDREST::GetAttrZDConnectionStatus() const {
  return ConnectionStatuses().FromText(GetAttributeValue(ATTR_SERVER_CONNECTION_STATUS), nullptr);
}

void CKelServiceTypeZDREST::SetAttrZDConnectionStatus(const EZDConnectionStatus& status) {
  SetAttributeValue(ATTR_SERVER_CONNECTION_STATUS, ConnectionStatuses().ToText(status));
}

}  // namespace kelsd
