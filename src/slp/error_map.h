// Translation of SLP codes by the table of each operation. Stateless: any thread may call it.
#pragma once

#include <slp.h>

#include <span>

#include "kelsd/SResult.h"

namespace kelsd {

/// One SLP code that an operation expects.
struct SLPErrorMapping {
  SLPError slp;
  SResult::EError error;
};

/// ERR_SUCCESS for SLP_OK, the code that `mappings` holds for `code`, else ERR_UNKNOWN.
constexpr SResult::EError MapSLPError(SLPError code, std::span<const SLPErrorMapping> mappings) {
  if (code == SLP_OK) {
    return SResult::ERR_SUCCESS;
  }
  for (const SLPErrorMapping& mapping : mappings) {
    if (mapping.slp == code) {
      return mapping.error;
    }
  }
  return SResult::ERR_UNKNOWN;
}

}  // namespace kelsd
