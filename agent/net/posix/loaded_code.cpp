#include "net/loaded_code.h"

namespace slp {

// The library is linked so that it is never unloaded.
void KeepCodeLoaded() {}

}  // namespace slp
