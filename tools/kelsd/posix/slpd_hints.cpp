#include "slpd_hints.h"

namespace kelsd_tool {

const char* const kSlpdOpenHint =
    "Check that this user may read the pid file of slpd (KELSD_SLPD_PIDFILE names it) and send it signals.";

const char* const kSlpdStartHint =
    "Check that slpd is installed (KELSD_SLPD names it elsewhere), that its port is free and, below 1024, "
    "permitted to this user, and look into its log.";

}  // namespace kelsd_tool
