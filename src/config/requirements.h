// What the library requires of an SLP installation, as rows that the records' checks list. Stateless: any
// thread may call.
#pragma once

#include <initializer_list>
#include <map>
#include <string>

#include "kelsd/CKelSLPConfig.h"

namespace kelsd {

/// One requirement: whether it is met, the property that it looks at, and what to say when it isn't met.
struct Requirement {
  bool met;
  CKelSLPConfig::EProperty property;
  std::string message;
};

/// Adds the messages of the requirements that aren't met.
inline void AddUnmet(std::initializer_list<Requirement> requirements,
                     std::map<CKelSLPConfig::EProperty, std::string>& deviations) {
  for (const Requirement& requirement : requirements) {
    if (!requirement.met) {
      deviations[requirement.property] = requirement.message;
    }
  }
}

}  // namespace kelsd
