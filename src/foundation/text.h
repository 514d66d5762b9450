// Small text helpers: trimming, letter case, splitting, joining, list cleaning and boolean texts. Texts are
// 8-bit strings; only ASCII characters have a case or count as white space. Stateless: any thread may call
// them, and none of them fails but for want of memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelsd {

/// `text` without the white space (blank, \t, \n, \v, \f, \r) at its ends, or at one of them.
std::string Trim(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string TrimRight(std::string_view text);

/// Changes the case of ASCII letters; every other byte stays.
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);

/// The pieces of `text` between characters of `delimiters`, untrimmed; empty pieces are never among them.
std::vector<std::string> Split(std::string_view text, std::string_view delimiters);
/// The pieces of a comma-separated list.
std::vector<std::string> SplitList(std::string_view text);

/// The trimmed elements with "," between them. The separator is also written before an element that trims to
/// nothing when the text so far isn't empty: {"a", " ", "b"} gives "a,,b".
std::string Join(const std::vector<std::string>& list);

/// The elements in order, trimmed and in lower or upper case, without empty ones. An element is left out as a
/// repeat when, as given, it equals one that is already in the result: repeats are only noticed in elements
/// that were in the cleaned form to begin with.
std::vector<std::string> CleanList(const std::vector<std::string>& list, bool to_lower_case);
/// CleanList, sorted ascending by bytes.
std::vector<std::string> NormalizeList(const std::vector<std::string>& list, bool to_lower_case);

/// Whether two texts are equal but for letter case and the white space at their ends.
bool EqualsNoCase(std::string_view a, std::string_view b);

/// "TRUE" or "FALSE", as boolean service attributes are written.
std::string BoolToText(bool value);
/// "true" or "false", as SLP properties are written.
std::string BoolToLowerText(bool value);
/// Reads a boolean service attribute: true exactly for "true" in any letter case, without white space around
/// it.
bool IsTrueText(std::string_view text);
/// Reads a boolean SLP property: whether the first character is one of T, t, Y, y and 1.
bool IsTrueFlag(std::string_view text);

/// Cuts `suffix` off the end of `text` if it stands there.
void RemoveSuffix(std::string& text, std::string_view suffix);

}  // namespace kelsd
