#include "net/network_list.h"

#include <algorithm>

#include "net/addresses.h"

namespace slp {

NetworkList::NetworkList(const std::vector<std::string>& texts, std::vector<std::string>& unknown) {
  for (const std::string& text : texts) {
    if (!Add(text)) {
      unknown.push_back(text);
    }
  }
}

bool NetworkList::Add(const std::string& text) {
  const std::size_t slash = text.find('/');
  const bool has_prefix = slash != std::string::npos;
  asio::error_code error;
  if (text.find(':') == std::string::npos) {
    if (!ParseAddress(text.substr(0, slash))) {
      return false;
    }
    const auto network = asio::ip::make_network_v4(has_prefix ? text : text + "/32", error);
    if (!error) {
      v4_.push_back(network.canonical());
    }
  } else {
    const auto network = asio::ip::make_network_v6(has_prefix ? text : text + "/128", error);
    if (!error) {
      v6_.push_back(network.canonical());
    }
  }
  return !error;
}

bool NetworkList::Contains(const asio::ip::address& given) const {
  const asio::ip::address address = Plain(given);
  if (address.is_v4()) {
    return std::any_of(v4_.begin(), v4_.end(), [ip = address.to_v4()](const asio::ip::network_v4& network) {
      return asio::ip::network_v4(ip, network.prefix_length()).canonical() == network;
    });
  }
  return std::any_of(
      v6_.begin(), v6_.end(),
      [ip = asio::ip::address_v6(address.to_v6().to_bytes())](const asio::ip::network_v6& network) {
        return asio::ip::network_v6(ip, network.prefix_length()).canonical() == network;
      });
}

}  // namespace slp
