#include "slpd/server/processes.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <asio/posix/stream_descriptor.hpp>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <limits>

namespace slp {
namespace {

bool CanBeProcess(std::uint32_t process_id) {
  return process_id != 0 && process_id <= static_cast<std::uint32_t>(std::numeric_limits<pid_t>::max());
}

// A descriptor that becomes readable when the process ends, whoever's it is; -1 when the system has none to
// give.
int OpenProcessDescriptor(std::uint32_t process_id) {
#ifdef SYS_pidfd_open
  return static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process_id), 0U));
#else
  static_cast<void>(process_id);
  return -1;
#endif
}

// One of another user may not be sent a signal, which tells that it is there.
bool Exists(std::uint32_t process_id) {
  return ::kill(static_cast<pid_t>(process_id), 0) == 0 || errno == EPERM;
}

class DescriptorNotice : public ProcessNotice {
 public:
  explicit DescriptorNotice(asio::io_context& io) : descriptor_(io) {}

  bool Open(std::uint32_t process_id) {
    const int descriptor = OpenProcessDescriptor(process_id);
    if (descriptor < 0) {
      return false;
    }
    asio::error_code error;
    descriptor_.assign(descriptor, error);
    if (error) {
      ::close(descriptor);
    }
    return !error;
  }

  void Wait(std::function<void(const asio::error_code& error)> ended) override {
    descriptor_.async_wait(asio::posix::stream_descriptor::wait_read, std::move(ended));
  }

 private:
  asio::posix::stream_descriptor descriptor_;
};

// When the process started; nothing for one that has ended and waits to be reaped, and "" where the system
// doesn't say: it may have no descriptor left to say it by.
std::optional<std::string> StartOf(std::uint32_t process_id) {
  constexpr int kFieldsUpToStartTime = 20;  // counted from the state, the first field behind the name
  if (!CanBeProcess(process_id) || !Exists(process_id)) {
    return std::nullopt;
  }
  std::ifstream file("/proc/" + std::to_string(process_id) + "/stat");
  std::string line;
  if (!std::getline(file, line)) {
    return "";
  }
  std::string::size_type position = line.rfind(')');
  if (position == std::string::npos || position + 2 >= line.size()) {
    return "";
  }
  position += 2;
  if (line[position] == 'Z' || line[position] == 'X') {
    return std::nullopt;
  }
  for (int field = 1; field < kFieldsUpToStartTime && position != std::string::npos; ++field) {
    position = line.find(' ', position);
    position += position == std::string::npos ? 0 : 1;
  }
  return position == std::string::npos ? "" : line.substr(position, line.find(' ', position) - position);
}

// The system is asked about each process by itself.
class EachByItself : public ProcessesNow {
 public:
  bool known() const override { return true; }
  std::optional<std::string> IdentityOf(std::uint32_t process_id) const override {
    return StartOf(process_id);
  }
};

}  // namespace

std::unique_ptr<ProcessNotice> ProcessNotice::Order(asio::io_context& io, std::uint32_t process_id) {
  auto notice = std::make_unique<DescriptorNotice>(io);
  return CanBeProcess(process_id) && notice->Open(process_id) ? std::move(notice) : nullptr;
}

std::unique_ptr<ProcessesNow> ProcessesNow::Look() {
  return std::make_unique<EachByItself>();
}

}  // namespace slp
