// Changing settings by key and text, of the daemon's configuration and of the client's. Stateless: any thread
// may call it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd_tool {

/// The property that `key` names, with or without "net.slp." in front; PROP_UNKNOWN for none.
kelsd::CKelSLPConfig::EProperty FindProperty(const std::string& key);

/// What to say of a key that names no property, with the one that was probably meant.
std::string UnknownKey(const std::string& key);

/// Whether the property can be changed through the library, in the daemon's configuration and in the
/// client's.
bool IsServiceEditable(kelsd::CKelSLPConfig::EProperty property);
bool IsClientEditable(kelsd::CKelSLPConfig::EProperty property);

/// A property and what it shall become: a number, "true" or "false", a text, or several of them separated by
/// commas.
struct Assignment {
  std::string key;  ///< as the user wrote it
  kelsd::CKelSLPConfig::EProperty property = kelsd::CKelSLPConfig::PROP_UNKNOWN;
  std::string value;
};

/// What is wrong with `text`, none when it has become `assignment`.
std::optional<std::string> ParseAssignment(const std::string& text, Assignment& assignment);

/// Makes all assignments, whose properties must be editable there. A value that is valid only together with
/// another one, such as a wait and its timeouts, may stand before or behind it. What is wrong with the first
/// one that cannot be made, none when all is well; the record is of no use otherwise.
std::optional<std::string> Assign(kelsd::CKelSLPServiceConfig& config,
                                  const std::vector<Assignment>& assignments);
std::optional<std::string> Assign(kelsd::CKelSLPClientConfig& config,
                                  const std::vector<Assignment>& assignments);

/// Whether `problem`, which came up when the settings were read, is about `property`: its value could not be
/// used then, and the record has the default in its place. A wait and its timeouts are dropped together.
bool IsAbout(const kelsd::SResult& problem, kelsd::CKelSLPConfig::EProperty property);

}  // namespace kelsd_tool
