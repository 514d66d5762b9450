// Narrows a search among the services of one type to those that the value index knows can match. Pure
// functions over an index that nobody changes meanwhile; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "slpd/registry/value_index.h"
#include "text/effort.h"
#include "text/predicate.h"

namespace slp {

/// Every service that can match has one of the values.
struct CandidatePlan {
  std::vector<ValueIndex::ValueId> values;
  std::size_t count = 0;  ///< services that have them; one that has two of them counts twice
};

/// The plan for the services of `type`, as AttributeKey names it, if it has fewer than `limit` candidates;
/// none when it has more, or the index cannot tell with less work than `limit` services are: then all
/// services of the type have to be looked at. Takes what the operands cost to look up from `effort`, since a
/// search may have to do so for each of thousands of types; none also when it does not suffice.
std::optional<CandidatePlan> PlanCandidates(const PredicateNode& node, std::uint32_t type,
                                            const ValueIndex& values, std::size_t limit, Effort& effort);

}  // namespace slp
