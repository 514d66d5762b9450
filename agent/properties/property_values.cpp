#include "properties/property_values.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "text/attributes.h"
#include "text/characters.h"
#include "text/fold.h"
#include "text/host_name.h"
#include "text/ip_address.h"
#include "text/ipv4_address.h"
#include "text/language.h"
#include "text/string_list.h"

namespace slp {
namespace {

bool IsHost(std::string_view text) {
  return IsIpAddress(text) || IsHostName(text);
}

bool IsHostList(std::string_view text) {
  const std::vector<std::string> hosts = SplitStringList(text);
  return std::all_of(hosts.begin(), hosts.end(), IsHost);
}

bool IsScopeList(std::string_view text) {
  const std::vector<std::string> scopes = SplitStringList(text);
  return !scopes.empty() && std::all_of(scopes.begin(), scopes.end(), IsValidScope);
}

}  // namespace

std::optional<bool> ToBool(std::string_view text) {
  std::string word(Trim(text));
  std::transform(word.begin(), word.end(), word.begin(), ToLower);
  if (word == "true" || word == "yes" || word == "1") {
    return true;
  }
  if (word == "false" || word == "no" || word == "0") {
    return false;
  }
  return std::nullopt;
}

std::optional<int> ToInt(std::string_view text, int least, int most) {
  const std::string_view digits = Trim(text);
  int number = 0;
  const std::from_chars_result end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = end.ec == std::errc() && end.ptr == digits.data() + digits.size();
  if (!whole || number < least || number > most) {
    return std::nullopt;
  }
  return number;
}

std::optional<std::vector<int>> ToIntList(std::string_view text, int least, int most) {
  std::vector<int> numbers;
  for (const std::string& element : SplitStringList(text)) {
    if (ToInt(element, 0, 0)) {
      break;
    }
    const std::optional<int> number = ToInt(element, least, most);
    if (!number) {
      return std::nullopt;
    }
    numbers.push_back(*number);
  }
  if (numbers.empty()) {
    return std::nullopt;
  }
  return numbers;
}

bool IsPropertyKey(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

std::string UsableHosts(std::string_view text) {
  std::vector<std::string> hosts = SplitStringList(text);
  std::erase_if(hosts, [](const std::string& host) { return !IsHost(host); });
  return JoinStringList(hosts);
}

bool IsAllowed(const PropertyInfo& property, std::string_view value) {
  switch (property.kind) {
    case PropertyKind::kBool:
      return ToBool(value).has_value();
    case PropertyKind::kInt:
      return ToInt(value, property.least, property.most).has_value();
    case PropertyKind::kLimit:
      return ToInt(value, -1, -1).has_value() || ToInt(value, 1, property.most).has_value();
    case PropertyKind::kTimeouts:
      return ToIntList(value, property.least, property.most).has_value();
    case PropertyKind::kText:
    case PropertyKind::kTextList:
      return true;
    case PropertyKind::kIpv4Address:
      return IsIpv4Address(value);
    case PropertyKind::kHostList:
      return IsHostList(value);
    case PropertyKind::kLanguage:
      return IsValidLanguageTag(Trim(value));
    case PropertyKind::kScopeList:
      return IsScopeList(value);
    case PropertyKind::kAttributeList:
      return AttributeList::Parse(value).ok();
  }
  return false;
}

}  // namespace slp
