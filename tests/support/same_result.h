// Results that tests expect, and comparing whole ones: code, detail and debug trail. (The comparison of
// SResult itself looks at the code only.)
#pragma once

#include <gmock/gmock.h>

#include <ostream>
#include <string>

#include "kelsd/SResult.h"

namespace kelsd {

inline const SResult kSuccess(SResult::ERR_SUCCESS);

/// What a value that is refused gives.
inline SResult Refusal(const std::string& detail, const std::string& debug) {
  return SResult(SResult::ERR_INVALID_PARAMETER, detail, debug);
}

/// How GoogleTest shows a result.
inline void PrintTo(const SResult& result, std::ostream* out) {
  *out << "code " << result.GetErrorCode() << ", detail \"" << result.GetErrorDetail() << "\", debug \""
       << result.GetErrorDebug() << "\"";
}

/// Matches a result with the same code, detail and debug trail as `expected`.
MATCHER_P(SameResult, expected, "is " + ::testing::PrintToString(expected)) {
  return arg.GetErrorCode() == expected.GetErrorCode() && arg.GetErrorDetail() == expected.GetErrorDetail() &&
         arg.GetErrorDebug() == expected.GetErrorDebug();
}

}  // namespace kelsd
