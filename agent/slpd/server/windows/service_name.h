// The name by which the service manager, and everybody who asks it, knows the daemon. Only constants.
#pragma once

namespace slp {

inline constexpr char kServiceName[] = "slpd";

}  // namespace slp
