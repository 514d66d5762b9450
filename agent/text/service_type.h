// Service types, abstract and concrete, with naming authorities (RFC 2609 section 2.1, RFC 2608 section 4.1).
// Values; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/error.h"

namespace slp {

/// "service:zdrest.tamro:http" has the abstract type "zdrest", the naming authority "tamro" and the concrete
/// type "http"; a plain "http" has only an abstract type and `service` false.
struct ServiceType {
  bool service = false;  ///< begins with "service:"
  std::string abstract_type;
  std::string naming_authority;  ///< empty: IANA
  bool has_concrete = false;     ///< a second colon stands in the text; the concrete type itself may be empty
  std::string concrete_type;

  /// The whole type as text, in the case that it was given in.
  std::string ToString() const;
  /// The type without the concrete part, e.g. "service:zdrest.tamro".
  std::string AbstractString() const;

  bool operator==(const ServiceType&) const = default;
};

/// White space around it is ignored. Names are of letters, digits and "+-._".
/// kParseError when the text is no service type; "service:servicehost.tamro:" (an empty concrete type) is
/// one.
Result<ServiceType> ParseServiceType(std::string_view text);

/// Whether a service of type `registered` answers a request for `requested` (RFC 2608 section 8.1): equal as
/// SLP compares strings, or `requested` is an abstract type and `registered` one of its concrete types.
bool TypeMatches(const ServiceType& requested, const ServiceType& registered);

/// How many groups of IPv6 there are for requests by type.
inline constexpr std::uint16_t kTypeGroups = 1024;

/// The number below kTypeGroups of the group that requests for this type go to (RFC 3111 section 4.1). Types
/// that SLP takes for equal have the same one.
std::uint16_t TypeGroupNumber(std::string_view type);

}  // namespace slp
