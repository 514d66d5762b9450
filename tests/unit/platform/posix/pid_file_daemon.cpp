// A daemon that keeps to the contract of the pid file and does nothing else. KELSD_TEST_DAEMON says "fails"
// for one that ends with a reason, "silent" for one that ends without a word, "crashes" for one that a signal
// ends, else it serves until SIGTERM.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>

namespace {

// Who asks whether a daemon runs holds the lock for a moment.
bool Lock(int file) {
  for (int tries = 0; tries < 20; ++tries) {
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
      return true;
    }
    usleep(10'000);
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const char* const said = std::getenv("KELSD_TEST_DAEMON");
  const std::string behaviour = said == nullptr ? "" : said;
  if (behaviour == "fails") {
    std::cerr << "some words\nport 427 is taken\n";
    return 3;
  }
  if (behaviour == "silent") {
    return 4;
  }
  if (behaviour == "crashes") {
    raise(SIGKILL);
  }
  if (argc != 5 || std::string(argv[1]) != "--pidfile" || std::string(argv[3]) != "--log") {
    std::cerr << "bad options\n";
    return 2;
  }
  sigset_t stop;
  sigemptyset(&stop);
  sigaddset(&stop, SIGTERM);
  sigprocmask(SIG_BLOCK, &stop, nullptr);
  const int file = open(argv[2], O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (file < 0 || !Lock(file)) {
    std::cerr << "another daemon runs\n";
    return 1;
  }
  const std::string content = std::to_string(getpid()) + " " + std::to_string(std::time(nullptr)) + "\n";
  if (ftruncate(file, 0) != 0 || pwrite(file, content.data(), content.size(), 0) < 0) {
    return 1;
  }
  // Ends by itself should the test have died.
  alarm(60);
  int received = 0;
  sigwait(&stop, &received);
  return ftruncate(file, 0);
}
