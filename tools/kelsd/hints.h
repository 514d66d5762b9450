// Advice for a person: what to do about an error of the library.
#pragma once

#include <string>

#include "kelsd/SResult.h"

namespace kelsd_tool {

/// One line, empty when there is nothing to advise beyond the description.
std::string HintFor(kelsd::SResult::EError code);

}  // namespace kelsd_tool
