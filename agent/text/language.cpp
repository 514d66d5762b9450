#include "text/language.h"

#include "text/fold.h"
#include "text/scanner.h"

namespace slp {
namespace {

std::string_view WithoutDialect(std::string_view tag) {
  return tag.substr(0, tag.find('-'));
}

}  // namespace

bool IsValidLanguageTag(std::string_view tag) {
  constexpr std::size_t kLongestSubtag = 8;
  if (tag.size() > kLongestLanguageTag) {
    return false;
  }
  Scanner scanner(tag);
  do {
    const std::string_view subtag = scanner.TakeWhile([](char c) { return IsLetter(c) || IsDigit(c); });
    if (subtag.empty() || subtag.size() > kLongestSubtag) {
      return false;
    }
  } while (scanner.TakeIf('-'));
  return scanner.AtEnd();
}

bool LanguageServes(std::string_view registered, std::string_view requested) {
  return EqualFolded(WithoutDialect(registered), WithoutDialect(requested));
}

}  // namespace slp
