#include "slpd/server/log_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <streambuf>
#include <string_view>
#include <system_error>

#include "slpd/server/posix/written_file.h"

namespace slp {
namespace {

// Writes a line as a whole when it is flushed.
class DescriptorBuffer : public std::streambuf {
 public:
  explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor) {}
  DescriptorBuffer(const DescriptorBuffer&) = delete;
  DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;
  ~DescriptorBuffer() override { ::close(descriptor_); }

 protected:
  int_type overflow(int_type character) override {
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
      pending_ += traits_type::to_char_type(character);
    }
    return traits_type::not_eof(character);
  }

  std::streamsize xsputn(const char* text, std::streamsize size) override {
    pending_.append(text, static_cast<std::size_t>(size));
    return size;
  }

  // What can't be written, to a disk that is full or a terminal that is stopped, is left out: the log must
  // not grow in memory instead, nor the daemon wait.
  int sync() override {
    std::string_view rest = pending_;
    while (!rest.empty()) {
      const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
      if (written < 0 && errno != EINTR) {
        break;
      }
      rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    const bool whole = rest.empty();
    pending_.clear();
    return whole ? 0 : -1;
  }

 private:
  int descriptor_;
  std::string pending_;
};

class LogFile : public std::ostream {
 public:
  explicit LogFile(int descriptor) : std::ostream(nullptr), buffer_(descriptor) { rdbuf(&buffer_); }

 private:
  DescriptorBuffer buffer_;
};

// These lead to what the daemon was started with, and are links.
bool IsOutputOfProgram(const std::string& path) {
  return path == "/dev/stdout" || path == "/dev/stderr";
}

}  // namespace

std::unique_ptr<std::ostream> OpenLogFile(const std::string& path, bool append, std::string& problem) {
  constexpr mode_t kPermissions = 0666;  // less what the process's mask takes away
  std::string reason;
  const int descriptor =
      OpenWrittenFile(path, O_WRONLY | O_APPEND, kPermissions, WrittenFile::kRegularOrDevice, reason);
  if (descriptor < 0) {
    if (IsOutputOfProgram(path)) {
      reason += "; without --log the log goes to the error output";
    }
    problem = "cannot open the log file " + path + ": " + reason;
    return nullptr;
  }
  auto file = std::make_unique<LogFile>(descriptor);
  // A device has nothing to empty.
  if (!append && ::ftruncate(descriptor, 0) != 0 && errno != EINVAL) {
    problem = "cannot empty the log file " + path + ": " + std::generic_category().message(errno);
    return nullptr;
  }
  return file;
}

}  // namespace slp
