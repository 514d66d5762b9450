#include <filesystem>
#include <iterator>

#include "support/open_descriptors/open_descriptors.h"

namespace kelsd::support {

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

}  // namespace kelsd::support
