// What the tests of the built daemon share. One thread.
#pragma once

#include <asio/ip/address.hpp>
#include <string>
#include <vector>

#include "agent/slpd_server/client.h"
#include "support/slpd_process/slpd_process.h"

namespace slp {

/// A registration file.
constexpr char kTwoServices[] =
    "service:printer:lpr://one,en,65535\n\nservice:printer:lpr://two,en,65535\nlocation=here\n\n";

inline std::vector<std::string> Printers(const support::SlpdProcess& slpd) {
  return FindServices({asio::ip::make_address(slpd.address()), slpd.port()}, "service:printer");
}

}  // namespace slp
