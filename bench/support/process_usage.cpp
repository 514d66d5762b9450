#include "bench/support/process_usage.h"

#include <unistd.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

namespace bench {
namespace {

std::string Content(int process_id, const std::string& name) {
  std::ifstream file("/proc/" + std::to_string(process_id) + "/" + name);
  if (!file) {
    throw std::runtime_error("no process " + std::to_string(process_id));
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

ProcessUsage UsageOf(int process_id) {
  // The program's name may hold blanks; the fields start behind its closing bracket, with the third one.
  const std::string stat = Content(process_id, "stat");
  std::istringstream fields(stat.substr(stat.rfind(')') + 1));
  std::string skipped;
  for (int field = 3; field < 14; ++field) {
    fields >> skipped;
  }
  long user_ticks = 0;
  long system_ticks = 0;
  fields >> user_ticks >> system_ticks;

  std::istringstream pages(Content(process_id, "statm"));
  std::size_t total = 0;
  std::size_t resident = 0;
  pages >> total >> resident;

  ProcessUsage usage;
  usage.processor_time =
      std::chrono::milliseconds((user_ticks + system_ticks) * 1000 / ::sysconf(_SC_CLK_TCK));
  usage.resident_bytes = resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return usage;
}

}  // namespace bench
