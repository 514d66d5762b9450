// Narrows a search among the services of one type to those that the equality index knows can match. Pure
// functions over an index that nobody changes meanwhile; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "slpd/value_index.h"
#include "text/predicate.h"

namespace slp {

/// Every service that can match stands under one of the keys.
struct CandidatePlan {
  std::vector<std::uint32_t> keys;
  std::size_t count = 0;  ///< services under the keys; one that stands under two of them counts twice
};

/// The plan for the services of `type`, as AttributeKey names it; none when the index cannot tell and all
/// services of the type have to be looked at.
std::optional<CandidatePlan> PlanCandidates(const PredicateNode& node, std::uint32_t type,
                                            const ValueIndex& values);

}  // namespace slp
