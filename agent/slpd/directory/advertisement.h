// What a directory agent says of itself (RFC 2608 section 8.5). Pure functions; any thread.
#pragma once

#include <string>

#include "slpd/agent_settings.h"
#include "wire/messages.h"

namespace slp {

/// The advertisement of the directory agent that is reached at `address`.
DaAdvert MakeAdvertisement(const AgentSettings& settings, const std::string& address);

/// The same as it is sent without having been asked for (XID 0), and, `leaving`, for the last time (boot
/// timestamp 0).
Message MakeUnsolicitedAdvertisement(const AgentSettings& settings, const std::string& address, bool leaving);

}  // namespace slp
