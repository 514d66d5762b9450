#include "slpd/candidates.h"

#include <utility>

#include "slpd/attribute_key.h"

namespace slp {
namespace {

using Kind = PredicateNode::Kind;
using MaybePlan = std::optional<CandidatePlan>;

MaybePlan PlanEquality(const PredicateNode& node, std::uint32_t type, const ValueIndex& values) {
  if (node.pieces.size() != 1) {
    return std::nullopt;
  }
  const std::uint32_t key = AttributeKey(type, node.tag, node.value);
  return CandidatePlan{{key}, values.Count(key)};
}

/// What matches all children stands under the keys of each, so the child with the fewest services does.
MaybePlan PlanConjunction(const PredicateNode& node, std::uint32_t type, const ValueIndex& values) {
  MaybePlan best;
  for (const PredicateNode& child : node.children) {
    MaybePlan plan = PlanCandidates(child, type, values);
    if (plan && (!best || plan->count < best->count)) {
      best = std::move(plan);
    }
  }
  return best;
}

/// What matches one of the children stands under the keys of that one, so all of them are needed.
MaybePlan PlanDisjunction(const PredicateNode& node, std::uint32_t type, const ValueIndex& values) {
  CandidatePlan all;
  for (const PredicateNode& child : node.children) {
    const MaybePlan plan = PlanCandidates(child, type, values);
    if (!plan) {
      return std::nullopt;
    }
    all.keys.insert(all.keys.end(), plan->keys.begin(), plan->keys.end());
    all.count += plan->count;
  }
  return all;
}

}  // namespace

std::optional<CandidatePlan> PlanCandidates(const PredicateNode& node, std::uint32_t type,
                                            const ValueIndex& values) {
  switch (node.kind) {
    case Kind::kEqual:
      return PlanEquality(node, type, values);
    case Kind::kAnd:
      return PlanConjunction(node, type, values);
    case Kind::kOr:
      return PlanDisjunction(node, type, values);
    default:
      return std::nullopt;
  }
}

}  // namespace slp
