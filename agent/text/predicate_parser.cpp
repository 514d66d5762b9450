#include "text/predicate_parser.h"

#include <optional>
#include <utility>
#include <vector>

#include "text/fold.h"
#include "text/scanner.h"
#include "text/tag.h"
#include "text/wildcard.h"

namespace slp {
namespace {

using Kind = PredicateNode::Kind;

/// What may stand escaped in an operand beside the reserved characters of SLP.
constexpr std::string_view kStar = "*";

std::optional<Kind> TakeOperator(Scanner& scanner) {
  constexpr std::pair<char, Kind> kOperators[] = {{'&', Kind::kAnd}, {'|', Kind::kOr}, {'!', Kind::kNot}};
  for (const auto& [character, kind] : kOperators) {
    if (scanner.TakeIf(character)) {
      return kind;
    }
  }
  return std::nullopt;
}

std::optional<Kind> TakeFilterType(Scanner& scanner) {
  constexpr std::pair<std::string_view, Kind> kFilterTypes[] = {{"=", Kind::kEqual},
                                                                {"~=", Kind::kApproximate},
                                                                {"<=", Kind::kLessOrEqual},
                                                                {">=", Kind::kGreaterOrEqual}};
  for (const auto& [text, kind] : kFilterTypes) {
    if (scanner.TakePrefix(text)) {
      return kind;
    }
  }
  return std::nullopt;
}

/// Fills in what the operand `text` says. Wildcards go with '=' only (RFC 2608 section 8.1).
bool SetOperand(std::string_view text, PredicateNode& node) {
  auto pieces = SplitAtWildcards(text, kStar);
  auto value = pieces && pieces->size() > 1 ? AttributeValue() : ParseAttributeValue(text, kStar);
  if (!value) {
    return false;
  }
  node.value = std::move(value).value();
  if (!pieces) {
    // The bytes of an opaque value, which are no text.
    node.pieces = {Fold(text)};
    return true;
  }
  const bool has_wildcard = pieces->size() > 1;
  node.pieces = std::move(pieces).value();
  if (node.pieces == std::vector<std::string>{"", ""}) {
    node.pieces.clear();
    return std::exchange(node.kind, Kind::kPresent) == Kind::kEqual;
  }
  return !has_wildcard || node.kind == Kind::kEqual;
}

/// item without its opening bracket, up to and with the closing one.
std::optional<PredicateNode> TakeComparison(Scanner& scanner) {
  PredicateNode node;
  const std::string_view raw_tag =
      scanner.TakeWhile([](char c) { return c == '\\' || IsSpace(c) || !IsReserved(c); });
  const auto tag = ParseTag(raw_tag);
  const auto kind = TakeFilterType(scanner);
  // attr ":=" value, with or without a matching rule before the colon.
  const bool is_extensible = kind == Kind::kEqual && Trim(raw_tag).ends_with(':');
  if (!tag || !kind || is_extensible) {
    return std::nullopt;
  }
  node.tag = Fold(*tag);
  node.kind = *kind;
  const std::string_view operand =
      scanner.TakeUntil([](char c) { return c == '(' || c == ')' || c == '\0'; });
  if (!SetOperand(operand, node) || !scanner.TakeIf(')')) {
    return std::nullopt;
  }
  return node;
}

/// Closes those of the operators in `open` whose brackets end here, `complete` being the last child of the
/// innermost. Gives the outermost one once it is closed; none while there are children to come.
std::optional<PredicateNode> CloseOperators(Scanner& scanner, std::vector<PredicateNode>& open,
                                            PredicateNode complete) {
  while (!open.empty()) {
    open.back().children.push_back(std::move(complete));
    scanner.SkipSpace();
    if (!scanner.TakeIf(')')) {
      return std::nullopt;
    }
    complete = std::move(open.back());
    open.pop_back();
  }
  return complete;
}

bool HasWholeNegation(const std::vector<PredicateNode>& open) {
  return !open.empty() && open.back().kind == Kind::kNot && !open.back().children.empty();
}

}  // namespace

// The operators whose brackets are still open are kept in a list, so that nesting costs no stack.
// 1. An opening bracket begins an operator, which is opened, or a comparison, which is read to its end.
// 2. Behind a comparison, closing brackets complete operators, each the last child of the one around it.
// 3. Without one, the next child of the innermost open operator follows; a negation takes only one.
// 4. When the outermost is complete, nothing may follow.
Result<PredicateNode> ParseFilter(std::string_view text) {
  std::vector<PredicateNode> open;
  std::optional<PredicateNode> root;
  int comparisons = 0;
  Scanner scanner(text);
  while (!root) {
    scanner.SkipSpace();
    if (HasWholeNegation(open) || !scanner.TakeIf('(')) {
      return Error::kParseError;
    }
    scanner.SkipSpace();
    if (const auto kind = TakeOperator(scanner)) {
      if (open.size() == static_cast<std::size_t>(Predicate::kMaximumDepth)) {
        return Error::kParseError;
      }
      open.emplace_back().kind = *kind;
      continue;
    }
    auto comparison = TakeComparison(scanner);
    if (!comparison || ++comparisons > Predicate::kMaximumComparisons) {
      return Error::kParseError;
    }
    root = CloseOperators(scanner, open, std::move(*comparison));
  }
  scanner.SkipSpace();
  return scanner.AtEnd() ? Result<PredicateNode>(std::move(*root)) : Error::kParseError;
}

}  // namespace slp
