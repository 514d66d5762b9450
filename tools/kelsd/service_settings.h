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

/// Whether `problem`, which came up when the settings were read, is about `property`: its value could not be
/// used then, and the record has the default in its place.
bool IsAbout(const kelsd::SResult& problem, kelsd::CKelSLPConfig::EProperty property);

}  // namespace kelsd_tool
