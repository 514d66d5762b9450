#include "support/host_daemon/host_daemon.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace kelsd::support {

std::string HostDaemon::File(const std::string& name) const {
  return (std::filesystem::path(folder_) / name).make_preferred().string();
}

std::string FileContent(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace kelsd::support
