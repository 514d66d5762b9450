#include "text/string_list.h"

#include <algorithm>
#include <unordered_set>

#include "text/fold.h"
#include "text/keyed_hash.h"
#include "text/scanner.h"

namespace slp {
namespace {

/// Lists up to so long are walked.
constexpr std::size_t kWalked = 8;

/// Answers whether a list holds an element. Short lists, the rule, are walked; a long one is hashed, so that
/// a peer who sends two lists of thousands of elements does not cost their product.
class Membership {
 public:
  explicit Membership(const std::vector<std::string>& list) : list_(list) {
    if (list_.size() > kWalked) {
      for (const std::string& element : list_) {
        folded_.insert(Fold(element));
      }
    }
  }

  bool Has(std::string_view element) const {
    return list_.size() > kWalked ? folded_.count(Fold(element)) != 0 : ListContains(list_, element);
  }

 private:
  const std::vector<std::string>& list_;
  std::unordered_set<std::string, TextHash> folded_;
};

}  // namespace

std::vector<std::string> SplitStringList(std::string_view text) {
  std::vector<std::string> elements;
  Scanner scanner(text);
  while (!scanner.AtEnd()) {
    const std::string_view element = Trim(scanner.TakeUntil([](char c) { return c == ','; }));
    if (!element.empty()) {
      elements.emplace_back(element);
    }
    scanner.TakeIf(',');
  }
  return elements;
}

std::string JoinStringList(const std::vector<std::string>& elements) {
  std::string text;
  for (const std::string& element : elements) {
    if (!text.empty()) {
      text += ',';
    }
    text += element;
  }
  return text;
}

bool ListContains(const std::vector<std::string>& list, std::string_view element) {
  return std::any_of(list.begin(), list.end(),
                     [element](const std::string& candidate) { return EqualFolded(candidate, element); });
}

bool ListsIntersect(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  const Membership members(b);
  return std::any_of(a.begin(), a.end(),
                     [&members](const std::string& element) { return members.Has(element); });
}

bool ListContainsAll(const std::vector<std::string>& outer, const std::vector<std::string>& inner) {
  const Membership members(outer);
  return std::all_of(inner.begin(), inner.end(),
                     [&members](const std::string& element) { return members.Has(element); });
}

std::vector<std::string> ListUnion(std::vector<std::string> base, const std::vector<std::string>& more) {
  if (base.size() + more.size() <= kWalked) {
    for (const std::string& element : more) {
      if (!ListContains(base, element)) {
        base.push_back(element);
      }
    }
    return base;
  }
  std::unordered_set<std::string, TextHash> known;
  for (const std::string& element : base) {
    known.insert(Fold(element));
  }
  for (const std::string& element : more) {
    if (known.insert(Fold(element)).second) {
      base.push_back(element);
    }
  }
  return base;
}

bool IsValidScope(std::string_view scope) {
  Scanner scanner(scope);
  while (const auto c = scanner.Peek()) {
    if (*c == '\\') {
      const auto byte = scanner.TakeEscape();
      if (!byte || !(IsReserved(static_cast<char>(*byte)) || IsOneOf(static_cast<char>(*byte), ";*+"))) {
        return false;
      }
    } else if (IsReserved(*c) || IsOneOf(*c, ";*+")) {
      return false;
    } else {
      scanner.Take();
    }
  }
  return !Trim(scope).empty();
}

}  // namespace slp
