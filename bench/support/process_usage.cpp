#include "bench/support/process_usage.h"

#include <unistd.h>

#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

namespace bench {
namespace {

[[noreturn]] void ThrowNoProcess(int process_id) {
  throw std::runtime_error("no process " + std::to_string(process_id));
}

std::string Content(int process_id, const std::string& name) {
  std::ifstream file("/proc/" + std::to_string(process_id) + "/" + name);
  if (!file) {
    ThrowNoProcess(process_id);
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

std::chrono::nanoseconds ProcessorTime(int process_id) {
  clockid_t clock{};
  timespec time{};
  if (::clock_getcpuclockid(process_id, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
    ThrowNoProcess(process_id);
  }
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

long ProcessorTicks(int process_id) {
  // The program's name may hold blanks; the fields start behind its closing bracket, with the third one.
  const std::string stat = Content(process_id, "stat");
  std::istringstream fields(stat.substr(stat.rfind(')') + 1));
  std::string skipped;
  for (int field = 3; field < 14; ++field) {
    fields >> skipped;
  }
  long user = 0;
  long system = 0;
  fields >> user >> system;
  return user + system;
}

std::size_t ResidentPages(int process_id) {
  std::istringstream pages(Content(process_id, "statm"));
  std::size_t total = 0;
  std::size_t resident = 0;
  pages >> total >> resident;
  return resident;
}

}  // namespace

ProcessUsage UsageOf(int process_id) {
  return {ProcessorTime(process_id), ProcessorTicks(process_id) * ClockTick(),
          ResidentPages(process_id) * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))};
}

std::chrono::milliseconds ClockTick() {
  return std::chrono::milliseconds(1000 / ::sysconf(_SC_CLK_TCK));
}

}  // namespace bench
