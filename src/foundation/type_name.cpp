#include "foundation/type_name.h"

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

namespace kelsd {

#if __has_include(<cxxabi.h>)

std::string ReadableTypeName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  return status == 0 ? std::string(name.get()) : std::string(type.name());
}

#else

std::string ReadableTypeName(const std::type_info& type) {
  return type.name();
}

#endif

}  // namespace kelsd
