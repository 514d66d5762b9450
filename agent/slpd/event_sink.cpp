#include "slpd/event_sink.h"

#include <array>

namespace slp {

std::string_view ToString(RegistrationEvent event) {
  // In the order of the enumeration.
  static constexpr std::array<std::string_view, 8> kTexts = {
      "registered",   "renewed", "updated",       "attributes removed",
      "deregistered", "expired", "process ended", "registration file replaced"};
  return kTexts.at(static_cast<std::size_t>(event));
}

}  // namespace slp
