// What the user names as a service type: one of the family's types by its short name, or any SLP service
// type.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kelsd/CKelServiceTypeTamroBase.h"

namespace kelsd_tool {

/// A service type to search for and the scopes that it is found in when the user names none.
struct ServiceKind {
  std::string type;
  std::vector<std::string> default_scopes;  ///< empty: the configured scopes
};

/// "zdrest", "terminal", "servicehost" and "servicehost:CONCRETE" are the family's types; everything else is
/// taken as a service type.
ServiceKind ParseServiceKind(const std::string& text);

/// A typed object for the service behind `url`; null when it is none of the family's types. `type`: the type
/// part of the URL.
std::unique_ptr<kelsd::CKelServiceTypeTamroBase> MakeFamilyService(const std::string& type,
                                                                   const std::string& url);

}  // namespace kelsd_tool
