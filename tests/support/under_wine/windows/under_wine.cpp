#include "support/under_wine/under_wine.h"

#include <windows.h>

namespace kelsd::support {

bool UnderWine() {
  const HMODULE system = GetModuleHandleA("ntdll.dll");
  return system != nullptr && GetProcAddress(system, "wine_get_version") != nullptr;
}

}  // namespace kelsd::support
