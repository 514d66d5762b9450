// One registered service as the registry takes it in and shows it. Values; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "slpd/seconds.h"

namespace slp {

/// Who made a registration, so that a reload of the registration file replaces the file's alone, and only the
/// own host's services are registered with directory agents.
enum class RegistrationSource : std::uint8_t {
  kMessage,  ///< a program of the own host
  kFile,
  kAgent,  ///< another host's service agent, which keeps its services with this directory agent
};

/// The lifetime that means "until the agent ends" in a registration file (RFC 2614 section 2.3).
inline constexpr std::uint16_t kMaximumLifetime = 0xFFFF;

/// A registration to be made. Texts as on the wire: escaped, in the case that they were given in.
struct Registration {
  std::string url;
  std::string service_type;
  std::string language = "en";
  std::vector<std::string> scopes;
  std::string attributes;
  std::uint16_t lifetime = 0;    ///< seconds, 1 to kMaximumLifetime
  bool permanent = false;        ///< never expires and is always shown with its whole lifetime
  std::uint32_t process_id = 0;  ///< dropped when this process has ended; 0: bound to none
  RegistrationSource source = RegistrationSource::kMessage;
  std::string host = {};  ///< the address of the other host that registered it; empty: it counts for none
  std::size_t host_share = SIZE_MAX;  ///< bytes that this host may take in all
};

/// One entry of a registration file and the line where it begins.
struct FileRegistration {
  int line = 0;
  Registration registration;
};

/// What another host has registered.
struct HostUse {
  std::size_t registrations = 0;
  std::size_t bytes = 0;  ///< of the heap, as if it shared neither types nor values with anybody

  bool operator==(const HostUse&) const = default;
};

/// A stored registration in one language. The texts belong to the registry and hold until its next change.
struct RegistrationView {
  std::string_view url;
  std::string_view service_type;
  std::string_view language;
  std::string_view scopes;
  std::string_view attributes;
  std::uint16_t lifetime = 0;     ///< as registered
  std::optional<Instant> expiry;  ///< gone then; none: permanent
  std::uint32_t process_id = 0;
  RegistrationSource source = RegistrationSource::kMessage;
  std::string_view host;
};

}  // namespace slp
