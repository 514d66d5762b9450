#include "text/service_type.h"

#include <utility>

#include "text/fold.h"
#include "text/scanner.h"

namespace slp {
namespace {

/// What a name in a service type is made of: resname of RFC 2609 section 2.1 plus the dot before the naming
/// authority, and the underscore, which types in use carry.
bool IsTypeCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || IsOneOf(c, "+-._");
}

/// The naming authority follows the last dot (RFC 2608 section 4.1).
bool SplitNamingAuthority(std::string_view name, ServiceType& type) {
  const std::size_t dot = name.rfind('.');
  type.abstract_type = name.substr(0, dot);
  if (dot == std::string_view::npos) {
    return !type.abstract_type.empty();
  }
  type.naming_authority = name.substr(dot + 1);
  return !type.abstract_type.empty() && !type.naming_authority.empty();
}

}  // namespace

std::string ServiceType::AbstractString() const {
  std::string text = service ? "service:" : "";
  text += abstract_type;
  if (!naming_authority.empty()) {
    text += '.';
    text += naming_authority;
  }
  return text;
}

std::string ServiceType::ToString() const {
  return has_concrete ? AbstractString() + ':' + concrete_type : AbstractString();
}

Result<ServiceType> ParseServiceType(std::string_view text) {
  ServiceType type;
  Scanner scanner(Trim(text));
  type.service = scanner.TakePrefix("service:");
  const std::string_view name = scanner.TakeWhile(IsTypeCharacter);
  if (!type.service) {
    // The type of another URL is its scheme (RFC 2608 section 4), in which a dot has no meaning. The scheme
    // "service" itself is none without a type behind it.
    type.abstract_type = name;
    const bool is_scheme = !name.empty() && scanner.AtEnd() && !EqualFolded(name, "service");
    return is_scheme ? Result<ServiceType>(std::move(type)) : Error::kParseError;
  }
  if (!SplitNamingAuthority(name, type)) {
    return Error::kParseError;
  }
  type.has_concrete = scanner.TakeIf(':');
  if (type.has_concrete) {
    type.concrete_type = scanner.TakeWhile(IsTypeCharacter);
  }
  return scanner.AtEnd() ? Result<ServiceType>(std::move(type)) : Error::kParseError;
}

bool TypeMatches(const ServiceType& requested, const ServiceType& registered) {
  if (requested.service != registered.service ||
      !EqualFolded(requested.abstract_type, registered.abstract_type) ||
      !EqualFolded(requested.naming_authority, registered.naming_authority)) {
    return false;
  }
  return !requested.has_concrete ||
         (registered.has_concrete && EqualFolded(requested.concrete_type, registered.concrete_type));
}

std::uint16_t TypeGroupNumber(std::string_view type) {
  constexpr std::uint32_t kFactor = 33;
  std::uint32_t hash = 0;
  for (const char c : Fold(type)) {
    hash = hash * kFactor + static_cast<unsigned char>(c);
  }
  return static_cast<std::uint16_t>(hash % kTypeGroups);
}

}  // namespace slp
