// A pipe carries the request from the signal handler, which may do little more than write, to the waiter. The
// signals are not blocked: programs that the library starts would inherit that.
#include "stop_request.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace kelsd_tool {
namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

// Read and write end. The handler has no other way to them than a global.
std::array<int, 2> request_pipe = {-1, -1};

void WriteRequest() {
  const char byte = 0;
  // A full pipe holds requests enough.
  [[maybe_unused]] const ssize_t written = write(request_pipe[1], &byte, 1);
}

void HandleSignal(int) {
  const int interrupted_errno = errno;
  WriteRequest();
  errno = interrupted_errno;
}

void SetHandler(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) {
    struct sigaction inherited {};
    sigaction(signal, nullptr, &inherited);
    // nohup starts programs so: they shall survive their terminal.
    const bool ignored_by_wish = signal == SIGHUP && inherited.sa_handler == SIG_IGN;
    if (!ignored_by_wish) {
      sigaction(signal, &action, nullptr);
    }
  }
}

}  // namespace

StopRequest::StopRequest() {
  if (pipe(request_pipe.data()) != 0) {
    throw std::system_error(errno, std::generic_category(), "no pipe for the signals");
  }
  for (const int end : request_pipe) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  fcntl(request_pipe[1], F_SETFL, O_NONBLOCK);
  SetHandler(HandleSignal);
  // Who reads the output may go before the tool does, which still has something to take back then.
  signal(SIGPIPE, SIG_IGN);
}

StopRequest::~StopRequest() {
  signal(SIGPIPE, SIG_DFL);
  SetHandler(SIG_DFL);
  for (int& end : request_pipe) {
    close(end);
    end = -1;
  }
}

void StopRequest::Wait() {
  // Unlike read, poll returns for every signal, so that a handler whose call was put off gets its turn.
  pollfd request{request_pipe[0], POLLIN, 0};
  while (poll(&request, 1, -1) < 0 && errno == EINTR) {
  }
  char byte = 0;
  [[maybe_unused]] const ssize_t taken = read(request_pipe[0], &byte, 1);
}

void StopRequest::Raise() {
  WriteRequest();
}

}  // namespace kelsd_tool
