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
  DescriptorNotice(asio::io_context& io, int descriptor) : descriptor_(io, descriptor) {}

  void Wait(std::function<void(const asio::error_code& error)> ended) override {
    descriptor_.async_wait(asio::posix::stream_descriptor::wait_read, std::move(ended));
  }

 private:
  asio::posix::stream_descriptor descriptor_;
};

}  // namespace

std::unique_ptr<ProcessNotice> ProcessNotice::Order(asio::io_context& io, std::uint32_t process_id) {
  const int descriptor = CanBeProcess(process_id) ? OpenProcessDescriptor(process_id) : -1;
  return descriptor < 0 ? nullptr : std::make_unique<DescriptorNotice>(io, descriptor);
}

// The system is asked about each process by itself.
struct ProcessesNow::Look {};

ProcessesNow::ProcessesNow() = default;

ProcessesNow::~ProcessesNow() = default;

bool ProcessesNow::known() const {
  return true;
}

// When the process started; nothing for one that has ended and waits to be reaped, and "" where the system
// doesn't say.
std::optional<std::string> ProcessesNow::IdentityOf(std::uint32_t process_id) const {
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

}  // namespace slp
