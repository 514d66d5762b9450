#include "slpd/server/posix/system_call_filter.h"

namespace slp {

bool HasSystemCallFilter() {
  return false;
}

int RefuseNeedlessSystemCalls() {
  return 0;
}

}  // namespace slp
