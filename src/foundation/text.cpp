#include "foundation/text.h"

#include <algorithm>
#include <locale>

namespace kelsd {
namespace {

// The classic locale whatever the application has set: in other 8-bit locales bytes of UTF-8 texts would
// count as white space or as letters.
const std::locale& ClassicLocale() {
  return std::locale::classic();
}

bool IsSpace(char character) {
  return std::isspace(character, ClassicLocale());
}

}  // namespace

std::string Trim(std::string_view text) {
  return TrimLeft(TrimRight(text));
}

std::string TrimLeft(std::string_view text) {
  return {std::find_if_not(text.begin(), text.end(), IsSpace), text.end()};
}

std::string TrimRight(std::string_view text) {
  return {text.begin(), std::find_if_not(text.rbegin(), text.rend(), IsSpace).base()};
}

std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::use_facet<std::ctype<char>>(ClassicLocale()).tolower(lower.data(), lower.data() + lower.size());
  return lower;
}

std::string ToUpper(std::string_view text) {
  std::string upper(text);
  std::use_facet<std::ctype<char>>(ClassicLocale()).toupper(upper.data(), upper.data() + upper.size());
  return upper;
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiters) {
  std::vector<std::string> pieces;
  std::size_t begin = text.find_first_not_of(delimiters);
  while (begin != std::string_view::npos) {
    const std::size_t end = text.find_first_of(delimiters, begin);
    pieces.emplace_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(delimiters, end);
  }
  return pieces;
}

std::vector<std::string> SplitList(std::string_view text) {
  return Split(text, ",");
}

std::string Join(const std::vector<std::string>& list) {
  std::string joined;
  for (const std::string& element : list) {
    if (!joined.empty()) {
      joined += ',';
    }
    joined += Trim(element);
  }
  return joined;
}

std::vector<std::string> CleanList(const std::vector<std::string>& list, bool to_lower_case) {
  std::vector<std::string> cleaned;
  for (const std::string& element : list) {
    if (std::find(cleaned.begin(), cleaned.end(), element) != cleaned.end()) {
      continue;
    }
    const std::string trimmed = Trim(element);
    if (!trimmed.empty()) {
      cleaned.push_back(to_lower_case ? ToLower(trimmed) : ToUpper(trimmed));
    }
  }
  return cleaned;
}

std::vector<std::string> NormalizeList(const std::vector<std::string>& list, bool to_lower_case) {
  std::vector<std::string> normalized = CleanList(list, to_lower_case);
  std::sort(normalized.begin(), normalized.end());
  return normalized;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return ToLower(Trim(a)) == ToLower(Trim(b));
}

std::string BoolToText(bool value) {
  return value ? "TRUE" : "FALSE";
}

std::string BoolToLowerText(bool value) {
  return value ? "true" : "false";
}

bool IsTrueText(std::string_view text) {
  return ToLower(text) == "true";
}

bool IsTrueFlag(std::string_view text) {
  return !text.empty() && std::string_view("TtYy1").find(text.front()) != std::string_view::npos;
}

void RemoveSuffix(std::string& text, std::string_view suffix) {
  if (std::string_view(text).ends_with(suffix)) {
    text.resize(text.size() - suffix.size());
  }
}

}  // namespace kelsd
