#include "slpd_hints.h"

namespace kelsd_tool {

const char* const kSlpdOpenHint =
    "Check that slpd is installed as a service (slpd install) and that this user may control it.";

const char* const kSlpdStartHint =
    "Check that slpd is installed as a service (slpd install) and that its port is free, and look into its "
    "log "
    "and the event log.";

}  // namespace kelsd_tool
