#include "net/addresses.h"

namespace slp {

std::optional<asio::ip::address_v4> ParseAddress(const std::string& text) {
  asio::error_code error;
  const auto address = asio::ip::make_address_v4(text, error);
  return error || address.to_string() != text ? std::nullopt : std::optional(address);
}

}  // namespace slp
