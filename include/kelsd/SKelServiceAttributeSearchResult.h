// The attributes that a search found for one service.
#pragma once

#include <map>
#include <string>

#include "kelsd/Export.h"
#include "kelsd/IKelServiceType.h"

namespace kelsd {

/// A plain value: copyable, owned by the caller, used by one thread at a time.
struct KELSD_EXPORT SKelServiceAttributeSearchResult {
 public:
  /// Keeps the text as it is; it is not parsed, `Attributes` stays empty.
  SKelServiceAttributeSearchResult(const std::string& attributeString = "");

  /// The attribute text, the number of parsed attributes, and a line for each of them with the number of its
  /// tag.
  std::string ToString();

  /// The attribute list as SLP returned it, "(x-version=1.2),(x-ip-addresses=10.0.0.5)" for example.
  std::string AttributeString;
  /// The value texts of the known tags that were asked for and found.
  std::map<IKelServiceType::EAttr, std::string> Attributes;
};

}  // namespace kelsd
