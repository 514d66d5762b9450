// Search predicates: LDAPv3 filters over attributes (RFC 2608 section 8.1, RFC 2254). Values; any thread.
//
// The one escape, a backslash and two hexadecimal digits, is that of both RFCs. Commas and other characters
// that SLP reserves may also stand raw in an operand, as RFC 2254 allows; "\2a" is a star that is no
// wildcard. White space around brackets, operators, tags and operands is skipped. Extensible matches are
// refused.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "text/attributes.h"
#include "text/effort.h"

namespace slp {

/// One comparison, or an operator over children.
struct PredicateNode {
  enum class Kind { kAnd, kOr, kNot, kEqual, kApproximate, kLessOrEqual, kGreaterOrEqual, kPresent };

  Kind kind = Kind::kPresent;
  std::vector<PredicateNode> children;  ///< kAnd, kOr: at least one; kNot: one

  std::string tag;  ///< comparisons: in normal form
  /// Comparisons: the unescaped pieces between the wildcards, in normal form; one piece: no wildcard. Only
  /// kEqual has more. kPresent: none.
  std::vector<std::string> pieces;
  AttributeValue value;  ///< comparisons without a wildcard: the typed operand
};

/// A parsed predicate. The empty text is the predicate that everything matches.
class Predicate {
 public:
  /// Deepest nesting of operators that is taken; a deeper one is a kParseError.
  static constexpr int kMaximumDepth = 256;

  /// Most comparisons that are taken; more are a kParseError. Each of them may be made with every service
  /// that a search looks at, so that one datagram must not bring thousands.
  static constexpr int kMaximumComparisons = 1024;

  /// Takes time and memory linear in the text.
  static Result<Predicate> Parse(std::string_view text);

  /// Takes what the comparisons cost from `effort`; those that the others make needless cost nothing. When it
  /// does not suffice, what is returned means nothing.
  bool Matches(const AttributeList& attributes, Effort& effort) const;

  /// The tree, for an index that wants to narrow a search; null when everything matches.
  const PredicateNode* root() const { return root_.get(); }

 private:
  std::shared_ptr<const PredicateNode> root_;
};

}  // namespace slp
