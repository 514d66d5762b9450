// The normal form in which SLP compares strings (RFC 2608 section 6.4): ASCII letters in lower case, white
// space at both ends removed and runs of it inside folded to one blank. Pure functions; any thread.
#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace slp {

std::string Fold(std::string_view text);

/// Whether both have the same normal form. Allocates nothing.
bool EqualFolded(std::string_view a, std::string_view b);

/// The order of the normal forms, byte by byte; bytes count as unsigned. Allocates nothing.
std::strong_ordering CompareFolded(std::string_view a, std::string_view b);

/// The same order, and how many bytes of `a` it took to tell: all of them, or up to the first difference.
struct MeasuredOrder {
  std::strong_ordering order;
  std::size_t bytes;
};
MeasuredOrder MeasureFolded(std::string_view a, std::string_view b);

/// As Fold, but white space at the ends is folded to one blank instead of removed: for the middle of a longer
/// text.
std::string FoldInside(std::string_view text);

/// `text` without white space at both ends.
std::string_view Trim(std::string_view text);

}  // namespace slp
