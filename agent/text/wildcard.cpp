#include "text/wildcard.h"

#include <utility>

#include "text/escape.h"
#include "text/fold.h"
#include "text/scanner.h"

namespace slp {
namespace {

/// Up to this length of a piece the plain search is linear enough and faster.
constexpr std::size_t kShortPiece = 16;

/// For each prefix of `piece` the length of its longest proper prefix that is also its suffix.
std::vector<std::size_t> BorderLengths(std::string_view piece) {
  std::vector<std::size_t> borders(piece.size(), 0);
  std::size_t matched = 0;
  for (std::size_t i = 1; i < piece.size(); ++i) {
    while (matched > 0 && piece[i] != piece[matched]) {
      matched = borders[matched - 1];
    }
    matched += piece[i] == piece[matched] ? 1 : 0;
    borders[i] = matched;
  }
  return borders;
}

/// Where `piece` first stands in `text`; never more steps than both have characters (Knuth, Morris and
/// Pratt), which std::string_view::find does not promise.
std::size_t Find(std::string_view text, std::string_view piece) {
  if (piece.size() <= kShortPiece || piece.size() > text.size()) {
    return text.find(piece);
  }
  const auto borders = BorderLengths(piece);
  std::size_t matched = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    while (matched > 0 && text[i] != piece[matched]) {
      matched = borders[matched - 1];
    }
    matched += text[i] == piece[matched] ? 1 : 0;
    if (matched == piece.size()) {
      return i + 1 - matched;
    }
  }
  return std::string_view::npos;
}

}  // namespace

Result<std::vector<std::string>> SplitAtWildcards(std::string_view text, std::string_view others) {
  const auto is_star = [](char c) { return c == '*'; };
  std::vector<std::string> pieces;
  Scanner scanner(text);
  bool is_last = false;
  while (!is_last) {
    const auto plain = UnescapeReserved(scanner.TakeUntil(is_star), others);
    if (!plain) {
      return plain.error();
    }
    is_last = scanner.TakeWhile(is_star).empty();
    pieces.push_back(FoldInside(*plain));
  }
  if (pieces.front().starts_with(' ')) {
    pieces.front().erase(0, 1);
  }
  if (pieces.back().ends_with(' ')) {
    pieces.back().pop_back();
  }
  return pieces;
}

bool MatchesPieces(const std::vector<std::string>& pieces, std::string_view folded) {
  if (pieces.size() == 1) {
    return folded == pieces.front();
  }
  const std::string& first = pieces.front();
  const std::string& last = pieces.back();
  if (folded.size() < first.size() + last.size() || !folded.starts_with(first) || !folded.ends_with(last)) {
    return false;
  }
  folded.remove_prefix(first.size());
  folded.remove_suffix(last.size());
  for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
    const std::size_t position = Find(folded, pieces[i]);
    if (position == std::string_view::npos) {
      return false;
    }
    folded.remove_prefix(position + pieces[i].size());
  }
  return true;
}

}  // namespace slp
