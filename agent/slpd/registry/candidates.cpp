#include "slpd/registry/candidates.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "slpd/registry/attribute_key.h"
#include "text/wildcard.h"

namespace slp {
namespace {

using Kind = PredicateNode::Kind;
using MaybePlan = std::optional<CandidatePlan>;
using ValueId = ValueIndex::ValueId;

/// Looking at so many values of the index takes about as long as comparing one service.
constexpr std::size_t kValuesPerService = 8;

/// Whether one look into the index answers the comparison. An approximate match is an equality.
bool IsLookup(const PredicateNode& node) {
  return (node.kind == Kind::kEqual || node.kind == Kind::kApproximate) && node.pieces.size() == 1;
}

/// The values of one attribute that a comparison asks for, by the texts of their keys.
struct Range {
  std::string start;                ///< what all of them begin with
  std::string first;                ///< the first of them, if it is there
  std::optional<std::string> last;  ///< likewise; none: all that begin with `start`
};

/// What the forms that Predicate compares with `node` lie between.
Range RangeOf(const PredicateNode& node, std::uint32_t type) {
  const std::string tag = AttributeKeyStart(type, node.tag);
  if (node.kind == Kind::kPresent) {
    return {tag, tag, std::nullopt};
  }
  if (node.kind == Kind::kEqual) {
    const std::string beginning = tag + kStringForm + node.pieces.front();
    return {beginning, beginning, std::nullopt};
  }
  const std::string operand = ValueNormalForm(node.value);
  const std::string all = tag + operand.front();
  return node.kind == Kind::kLessOrEqual ? Range{all, all, tag + operand}
                                         : Range{all, tag + operand, std::nullopt};
}

/// What it costs to make the key of a comparison and to find its place in the index.
std::size_t LookupCost(const PredicateNode& node) {
  return Effort::kComparison + node.tag.size() + (node.pieces.empty() ? 0 : node.pieces.front().size());
}

/// Plans for one search: shares out how much of the index it may look at.
class Planner {
 public:
  Planner(std::uint32_t type, const ValueIndex& values, std::size_t limit, Effort& effort)
      : type_(type), values_(values), looks_left_(limit * kValuesPerService), effort_(effort) {}

  /// Gives up where the candidates are not fewer than `limit`.
  MaybePlan Plan(const PredicateNode& node, std::size_t limit) {
    if (!effort_.Spend(1)) {
      return std::nullopt;
    }
    switch (node.kind) {
      case Kind::kAnd:
        return PlanConjunction(node, limit);
      case Kind::kOr:
        return PlanDisjunction(node, limit);
      case Kind::kNot:
        return std::nullopt;
      default:
        break;
    }
    if (limit == 0 || !effort_.Spend(LookupCost(node))) {
      return std::nullopt;
    }
    return IsLookup(node) ? PlanLookup(node, limit) : PlanRange(node, limit);
  }

 private:
  MaybePlan PlanLookup(const PredicateNode& node, std::size_t limit) const {
    CandidatePlan plan;
    AddTo(plan, values_.Find(AttributeKey(type_, node.tag, node.value)));
    return plan.count < limit ? MaybePlan(std::move(plan)) : std::nullopt;
  }

  MaybePlan PlanRange(const PredicateNode& node, std::size_t limit) {
    const Range range = RangeOf(node, type_);
    const std::string_view start = CutKeyText(range.start);
    const std::size_t form = AttributeKeyStart(type_, node.tag).size() + 1;
    std::size_t looks = std::min(looks_left_, limit * kValuesPerService);
    looks_left_ -= looks;
    CandidatePlan plan;
    bool given_up = false;
    values_.VisitFrom(CutKeyText(range.first), [&](ValueId value, std::string_view text) {
      if (given_up || !text.starts_with(start) || (range.last && text > CutKeyText(*range.last))) {
        return false;
      }
      // A text that has been cut tells only how the value begins.
      const bool whole = text.size() < kLongestKeyText;
      if (node.kind != Kind::kEqual || !whole || MatchesPieces(node.pieces, text.substr(form))) {
        AddTo(plan, value);
      }
      given_up = looks == 0 || plan.count >= limit;
      looks -= looks == 0 ? 0 : 1;
      return !given_up;
    });
    looks_left_ += looks;
    return given_up ? std::nullopt : MaybePlan(std::move(plan));
  }

  /// What matches all children has the values of each, so the child with the fewest services does. Those that
  /// are looked up at once come first and tell how much work the others are worth.
  MaybePlan PlanConjunction(const PredicateNode& node, std::size_t limit) {
    MaybePlan best;
    for (const bool lookups : {true, false}) {
      for (const PredicateNode& child : node.children) {
        if (IsLookup(child) == lookups) {
          if (MaybePlan plan = Plan(child, limit)) {
            limit = plan->count;
            best = std::move(plan);
          }
        }
      }
    }
    return best;
  }

  /// What matches one of the children has the values of that one, so all of them are needed.
  MaybePlan PlanDisjunction(const PredicateNode& node, std::size_t limit) {
    CandidatePlan all;
    for (const PredicateNode& child : node.children) {
      const MaybePlan plan = Plan(child, limit - all.count);
      if (!plan) {
        return std::nullopt;
      }
      all.values.insert(all.values.end(), plan->values.begin(), plan->values.end());
      all.count += plan->count;
    }
    return all;
  }

  void AddTo(CandidatePlan& plan, ValueId value) const {
    if (value != ValueIndex::kNoValue) {
      plan.values.push_back(value);
      plan.count += values_.Count(value);
    }
  }

  std::uint32_t type_;
  const ValueIndex& values_;
  std::size_t looks_left_;
  Effort& effort_;
};

}  // namespace

std::optional<CandidatePlan> PlanCandidates(const PredicateNode& node, std::uint32_t type,
                                            const ValueIndex& values, std::size_t limit, Effort& effort) {
  return Planner(type, values, limit, effort).Plan(node, limit);
}

}  // namespace slp
