// The attribute tags and their texts on the wire.
#include "foundation/text_table.h"
#include "kelsd/IKelServiceType.h"

namespace kelsd {
namespace {

const TextTable<IKelServiceType::EAttr>& Tags() {
  static const auto& table = *new TextTable<IKelServiceType::EAttr>({
      {IKelServiceType::ATTR_NONE, ""},
      {IKelServiceType::ATTR_VERSION, "x-version"},
      {IKelServiceType::ATTR_IP_ADDRESSES, "x-ip-addresses"},
      {IKelServiceType::ATTR_OPERATION, "x-operation"},
      {IKelServiceType::ATTR_SERVER_MODE, "x-server-mode"},
      {IKelServiceType::ATTR_SERVER_ZD_STATUS, "x-server-zd-status"},
      {IKelServiceType::ATTR_SERVER_NS_STATUS, "x-server-ns-status"},
      {IKelServiceType::ATTR_SERVER_NS_NAME, "x-server-ns-name"},
      {IKelServiceType::ATTR_SERVER_NS_PORT, "x-server-ns-port"},
      {IKelServiceType::ATTR_SERVER_NAME, "x-server-name"},
      {IKelServiceType::ATTR_SERVER_NETWORKADAPTER, "x-server-networkadapter"},
      {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, "x-server-cluster-status"},
      {IKelServiceType::ATTR_PARTNER_TERMINAL, "x-partner-terminal"},
      {IKelServiceType::ATTR_PARTNER_SERVER_NAME, "x-partner-server-name"},
      {IKelServiceType::ATTR_PARTNER_NS_NAME, "x-partner-ns-name"},
      {IKelServiceType::ATTR_VERSION_ZD, "x-version-zd"},
      {IKelServiceType::ATTR_SERVER_MODE_LAST_STARTED, "x-server-mode-last-started"},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, "x-servicediscovery-is-da"},
      {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES, "x-servicediscovery-da-addresses"},
      {IKelServiceType::ATTR_SERVER_TERMINAL, "x-server-terminal"},
      {IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, "x-server-connection-status"},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_NAME, "x-configured-server-ns-name"},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, "x-configured-server-ns-port"},
      {IKelServiceType::ATTR_CONFIGURED_SERVER_NAME, "x-configured-server-name"},
      {IKelServiceType::ATTR_SERVER_NS_IPS, "x-server-ns-ips"},
      {IKelServiceType::ATTR_SERVICEHOST_SDK_VERSION, "x-servicehost-sdk-version"},
      {IKelServiceType::ATTR_SERVICEHOST_PRODUCT_NAME, "x-servicehost-product-name"},
      {IKelServiceType::ATTR_SERVICEHOST_MODE, "x-servicehost-mode"},
      {IKelServiceType::ATTR_SERVICEHOST_PLUGIN_NAME, "x-servicehost-plugin-name"},
      {IKelServiceType::ATTR_SERVICEHOST_INSTANCE_NAME, "x-servicehost-instance-name"},
  });
  return table;
}

[[maybe_unused]] const auto& tags_built_at_load = Tags();

}  // namespace

IKelServiceType::IKelServiceType() = default;
IKelServiceType::~IKelServiceType() = default;

IKelServiceType::EAttr IKelServiceType::StringToEAttr(const std::string& text, bool* unknown) {
  return Tags().FromText(text, unknown);
}

std::string IKelServiceType::ToString(const EAttr& tag) {
  return Tags().ToText(tag);
}

}  // namespace kelsd
