// Changing the daemon's settings by key and text.
#pragma once

#include <optional>
#include <string>

#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd_tool {

/// The property that `key` names, with or without "net.slp." in front; PROP_UNKNOWN for none.
kelsd::CKelSLPConfig::EProperty FindProperty(const std::string& key);

/// Whether the property can be changed through the library.
bool IsEditable(kelsd::CKelSLPConfig::EProperty property);

/// Sets a property, which must be editable, to what `text` says: a number, "true" or "false", a text, or
/// several of them separated by commas. What is wrong with it, none when all is well; the record is unchanged
/// then.
std::optional<std::string> SetSetting(kelsd::CKelSLPServiceConfig& config,
                                      kelsd::CKelSLPConfig::EProperty property, const std::string& text);

}  // namespace kelsd_tool
