#include "text/predicate.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <utility>

#include "text/fold.h"
#include "text/predicate_parser.h"
#include "text/wildcard.h"

namespace slp {
namespace {

using Kind = PredicateNode::Kind;

/// What it costs to find the attribute of a tag: about so many tags are looked at, and most of them differ in
/// their first bytes.
std::size_t LookupCost(const AttributeList& attributes, std::string_view tag) {
  return static_cast<std::size_t>(std::bit_width(attributes.items().size())) * (3 + tag.size() / 4);
}

/// The order of two strings; pays for what it looks at.
std::strong_ordering CompareStrings(const std::string& value, const PredicateNode& node, Effort& effort) {
  const MeasuredOrder measured = MeasureFolded(value, node.pieces.front());
  effort.Spend(measured.bytes);
  return measured.order;
}

/// The order of two values of the same type. Booleans "may only be compared with '='" (RFC 2608 section 5);
/// opaque values are "sequences of bytes", which is what their order follows.
bool IsOrdered(const PredicateNode& node, const AttributeValue& value, Effort& effort) {
  const auto holds = [&node](std::strong_ordering order) {
    return node.kind == Kind::kLessOrEqual ? std::is_lteq(order) : std::is_gteq(order);
  };
  if (const auto* text = std::get_if<std::string>(&value.content)) {
    return holds(CompareStrings(*text, node, effort));
  }
  if (const auto* integer = std::get_if<std::int32_t>(&value.content)) {
    return holds(*integer <=> std::get<std::int32_t>(node.value.content));
  }
  if (const auto* opaque = std::get_if<Opaque>(&value.content)) {
    const Opaque& operand = std::get<Opaque>(node.value.content);
    effort.Spend(std::min(opaque->size(), operand.size()));
    return holds(*opaque <=> operand);
  }
  return false;
}

bool IsEqual(const PredicateNode& node, const AttributeValue& value, Effort& effort) {
  if (const auto* text = std::get_if<std::string>(&value.content)) {
    return std::is_eq(CompareStrings(*text, node, effort));
  }
  if (const auto* opaque = std::get_if<Opaque>(&value.content)) {
    const Opaque& operand = std::get<Opaque>(node.value.content);
    return opaque->size() == operand.size() && effort.Spend(operand.size()) && *opaque == operand;
  }
  return value.content == node.value.content;
}

/// Whether one value satisfies a comparison. An approximate match, which RFC 2608 does not define, is an
/// equality.
bool Satisfies(const PredicateNode& node, const AttributeValue& value, Effort& effort) {
  const auto* text = std::get_if<std::string>(&value.content);
  if (node.pieces.size() > 1) {
    // "Request terms which include wildcards are interpreted to be Strings" (RFC 2608 section 8.1).
    return text != nullptr && effort.Spend(text->size()) && MatchesPieces(node.pieces, Fold(*text));
  }
  if (node.value.content.index() != value.content.index()) {
    return false;
  }
  if (node.kind == Kind::kLessOrEqual || node.kind == Kind::kGreaterOrEqual) {
    return IsOrdered(node, value, effort);
  }
  return IsEqual(node, value, effort);
}

/// Whether `node`, or its negation, holds.
///
/// RFC 2608 section 8.1 compares a term with each value of an attribute and joins the results by "or", also
/// under a negation: "(!(Y=0))" matches (y=0,1). So a negation is handed down to the comparisons, and there
/// asks for a value that does not satisfy. Where an attribute is absent or a keyword, no comparison is
/// satisfied and its negation holds: SLP knows all of a service's attributes, so nothing is undefined as in
/// LDAP. The same goes for values of another type.
bool Holds(const PredicateNode& node, const AttributeList& attributes, bool negated, Effort& effort) {
  const auto child_holds = [&](const PredicateNode& child) {
    return effort.Spend(1) && Holds(child, attributes, negated, effort);
  };
  switch (node.kind) {
    case Kind::kNot:
      return effort.Spend(1) && Holds(node.children.front(), attributes, !negated, effort);
    case Kind::kAnd:
    case Kind::kOr:
      return (node.kind == Kind::kAnd) != negated
                 ? std::all_of(node.children.begin(), node.children.end(), child_holds)
                 : std::any_of(node.children.begin(), node.children.end(), child_holds);
    default:
      break;
  }
  if (!effort.Spend(LookupCost(attributes, node.tag))) {
    return false;
  }
  const Attribute* attribute = attributes.Find(node.tag);
  if (node.kind == Kind::kPresent) {
    return (attribute != nullptr) != negated;
  }
  if (attribute == nullptr || attribute->IsKeyword()) {
    return negated;
  }
  return std::any_of(attribute->values.begin(), attribute->values.end(), [&](const AttributeValue& value) {
    return effort.Spend(Effort::kComparison) && Satisfies(node, value, effort) != negated;
  });
}

}  // namespace

Result<Predicate> Predicate::Parse(std::string_view text) {
  Predicate predicate;
  if (Trim(text).empty()) {
    return predicate;
  }
  auto root = ParseFilter(text);
  if (!root) {
    return root.error();
  }
  predicate.root_ = std::make_shared<const PredicateNode>(std::move(root).value());
  return predicate;
}

bool Predicate::Matches(const AttributeList& attributes, Effort& effort) const {
  return root_ == nullptr || Holds(*root_, attributes, false, effort);
}

}  // namespace slp
