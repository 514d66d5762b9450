#include "slpd/server/posix/written_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace slp {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIsLink = "it is a symbolic link, which is not followed: name the file itself";
constexpr const char* kIsNoFile = "it is no regular file: name one, in a folder that nobody else may write";
constexpr const char* kHasSecondName =
    "it has a second name (a hard link), so that it may be somebody else's file: name another one, in a "
    "folder that nobody else may write";

std::string OpenFailure(const std::string& path, int error) {
  std::error_code ignored;
  const fs::file_type type = fs::symlink_status(path, ignored).type();
  // The same error tells a link that is the file and links that make a circle of folders.
  if (error == ELOOP && type == fs::file_type::symlink) {
    return kIsLink;
  }
  // A pipe that nobody reads, where opening does not wait for who does; and a socket.
  if (error == ENXIO && (type == fs::file_type::fifo || type == fs::file_type::socket)) {
    return kIsNoFile;
  }
  return std::generic_category().message(error);
}

// Why an open file is not written; empty when it may be.
std::string Objection(int descriptor, WrittenFile kind) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    return std::generic_category().message(errno);
  }
  if (S_ISREG(status.st_mode)) {
    return status.st_nlink > 1 ? kHasSecondName : "";
  }
  return S_ISCHR(status.st_mode) && kind == WrittenFile::kRegularOrDevice ? "" : kIsNoFile;
}

}  // namespace

int OpenWrittenFile(const std::string& path, int flags, mode_t permissions, WrittenFile kind,
                    std::string& reason) {
  const int descriptor =
      ::open(path.c_str(), flags | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, permissions);
  if (descriptor < 0) {
    reason = OpenFailure(path, errno);
    return -1;
  }
  const std::string objection = Objection(descriptor, kind);
  if (!objection.empty()) {
    reason = objection;
    ::close(descriptor);
    return -1;
  }
  return descriptor;
}

}  // namespace slp
