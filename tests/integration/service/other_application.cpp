#include "integration/service/other_application.h"

#include <stdexcept>

#include "support/wait_until.h"

namespace kelsd::integration {
namespace {

constexpr std::chrono::seconds kLimit{30};

}  // namespace

OtherApplication::OtherApplication(const std::string& url, int lifetime_seconds,
                                   std::chrono::milliseconds check_interval)
    : process_({KELSD_REGISTRAR_PROGRAM, url, std::to_string(lifetime_seconds),
                std::to_string(check_interval.count()), folder_.Path(kLooksAfter)},
               folder_.Path("output"), folder_.Path("error")) {
  const auto said_something = [this] { return folder_.ReadText("output").find('\n') != std::string::npos; };
  support::WaitUntil(said_something, kLimit);
  if (const std::string said = folder_.ReadText("output"); said != "registered\n") {
    throw std::runtime_error("the other application: " + said);
  }
}

}  // namespace kelsd::integration
