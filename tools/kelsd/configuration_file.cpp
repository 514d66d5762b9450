#include "configuration_file.h"

#include <cstdlib>

namespace kelsd_tool {

std::optional<std::string> ConfigurationFile() {
  constexpr const char* kSpace = " \t\n\v\f\r";
  const char* const value = std::getenv("OpenSLPConfig");
  if (value == nullptr) {
    return std::nullopt;
  }
  const std::string path = value;
  const std::size_t begin = path.find_first_not_of(kSpace);
  return begin == std::string::npos ? std::string()
                                    : path.substr(begin, path.find_last_not_of(kSpace) - begin + 1);
}

}  // namespace kelsd_tool
