// A list of networks by address and prefix. Values; any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <asio/ip/network_v4.hpp>
#include <asio/ip/network_v6.hpp>
#include <string>
#include <vector>

namespace slp {

class NetworkList {
 public:
  NetworkList() = default;

  /// Each text is an address, which stands for itself, or as in "192.0.2.0/24" and "2001:db8::/32" a network;
  /// what is neither goes to `unknown` and is left out.
  NetworkList(const std::vector<std::string>& texts, std::vector<std::string>& unknown);

  bool Contains(const asio::ip::address& address) const;

 private:
  bool Add(const std::string& text);

  std::vector<asio::ip::network_v4> v4_;
  std::vector<asio::ip::network_v6> v6_;
};

}  // namespace slp
