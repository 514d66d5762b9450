// What is known of each net.slp.* property: one table for reading, checking, --help and the documentation.
// Immutable; any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace slp {

enum class PropertyKind {
  kBool,           ///< true or false
  kInt,            ///< a whole number from `least` to `most`
  kLimit,          ///< -1 for none, or a whole number from 1 to `most`
  kTimeouts,       ///< milliseconds, separated by commas, each from `least` to `most`; a 0 ends the list
  kText,           ///< any text
  kTextList,       ///< texts separated by commas
  kIpv4Address,    ///< an IPv4 address
  kHostList,       ///< addresses of either version and names of hosts, separated by commas
  kLanguage,       ///< a language tag (RFC 2608 section 8)
  kScopeList,      ///< scope names, separated by commas, at least one (RFC 2608 section 6.4.1)
  kAttributeList,  ///< an attribute list (RFC 2608 section 5)
};

struct PropertyInfo {
  std::string_view key;
  std::string_view default_value;
  std::string_view effect;  ///< one line for a reader of --help
  PropertyKind kind = PropertyKind::kText;
  int least = 0;
  int most = 0;
  bool read_only = false;  ///< neither a file nor SLPSetProperty changes it
  bool has_effect = true;  ///< whether this agent heeds it
};

/// Every property with a default, in the order in which the documentation lists them.
std::span<const PropertyInfo> PropertyCatalogue();

/// Null for a key that has no row. Keys are compared exactly.
const PropertyInfo* FindProperty(std::string_view key);

/// The files that were read, each there exactly when its file could be opened; they have no default and are
/// read-only.
inline constexpr std::string_view kGlobalFileKey = "net.slp.OpenSLPConfigFile";
inline constexpr std::string_view kEnvironmentFileKey = "net.slp.EnvConfigFile";
inline constexpr std::string_view kApplicationFileKey = "net.slp.AppConfigFile";

/// Whether neither a file nor SLPSetProperty may give the key a value.
bool IsReadOnlyProperty(std::string_view key);

/// What a value has to be, as in "a whole number from 1 to 65535".
std::string DescribeAllowedValues(const PropertyInfo& property);

}  // namespace slp
