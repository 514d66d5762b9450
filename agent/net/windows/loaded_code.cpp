#include "net/loaded_code.h"

#include <windows.h>

#include <system_error>

namespace slp {

void KeepCodeLoaded() {
  HMODULE module = nullptr;
  if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                         reinterpret_cast<LPCWSTR>(&KeepCodeLoaded), &module) == 0) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
  }
}

}  // namespace slp
