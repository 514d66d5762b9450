#include "support/under_wine/under_wine.h"

namespace kelsd::support {

bool UnderWine() {
  return false;
}

}  // namespace kelsd::support
