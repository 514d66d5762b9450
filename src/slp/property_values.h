// Reading all properties of a configuration record. The caller holds the core lock.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "slp/configuration_properties.h"
#include "slp/slp_impl.h"

namespace kelsd {

/// The reader of each kind of value.
inline SResult ReadProperty(int& value, CKelSLPConfig::EProperty property) {
  return CKelSLPImpl::GetNumericProperty(value, property);
}
inline SResult ReadProperty(bool& value, CKelSLPConfig::EProperty property) {
  return CKelSLPImpl::GetBoolProperty(value, property);
}
inline SResult ReadProperty(std::string& value, CKelSLPConfig::EProperty property) {
  return CKelSLPImpl::GetStringProperty(value, property);
}
inline SResult ReadProperty(std::vector<std::string>& value, CKelSLPConfig::EProperty property) {
  return CKelSLPImpl::GetStringListProperty(value, property);
}
inline SResult ReadProperty(std::vector<int>& value, CKelSLPConfig::EProperty property) {
  return CKelSLPImpl::GetTimeoutList(value, property);
}

/// Reads `properties` in their order into `values`. One that cannot be read leaves its value alone and is
/// appended to `errors`, with `prefix` and a blank in front of its debug trail.
template <typename Values>
void ReadProperties(Values& values, std::span<const ConfigurationProperty<Values>> properties,
                    const char* prefix, std::vector<SResult>& errors) {
  for (const ConfigurationProperty<Values>& row : properties) {
    const SResult read =
        std::visit([&](auto member) { return ReadProperty(values.*member, row.property); }, row.member);
    if (read.IsNotOk()) {
      errors.push_back(read.PrependErrorDebug(prefix, " "));
    }
  }
}

}  // namespace kelsd
