// Everything that one request depends on beside its own arguments. Values; any thread.
#pragma once

#include <cstdint>
#include <functional>

#include "api/handle_table.h"
#include "api/request_settings.h"
#include "net/deadline.h"

namespace slp::client {

/// Where time and randomness come from.
struct Environment {
  SteadyClock clock;
  std::function<std::uint16_t()>
      new_xid;  ///< never 0, which unsolicited advertisements carry (RFC 2608 section 8)
};

struct RequestContext {
  Environment environment;
  RequestSettings settings;
  HandleState handle;
};

}  // namespace slp::client
