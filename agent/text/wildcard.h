// Matching of texts with a '*' for any characters (RFC 2608 sections 6.4 and 9.4). Pure functions; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace slp {

/// Cuts `text` at its stars, runs of stars counting as one, and gives the pieces unescaped and in normal
/// form; a blank beside a star is part of what is searched for. One piece: there was no star. kParseError for
/// a bad escape (see UnescapeReserved).
Result<std::vector<std::string>> SplitAtWildcards(std::string_view text, std::string_view others = {});

/// Whether `folded`, a text in normal form, consists of `pieces` with any characters between them. Takes time
/// linear in the length of both.
bool MatchesPieces(const std::vector<std::string>& pieces, std::string_view folded);

}  // namespace slp
