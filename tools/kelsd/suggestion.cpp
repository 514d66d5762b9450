#include "suggestion.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace kelsd_tool {
namespace {

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Letters to insert, drop, replace, or to swap with their neighbour, to make one of the other. Row by row of
// the usual table, of which the last two are kept for the swaps.
std::size_t Distance(const std::string& from, const std::string& to) {
  std::vector<std::size_t> before_last(to.size() + 1);
  std::vector<std::size_t> last(to.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        row[j] = std::min(row[j], before_last[j - 2] + 1);
      }
    }
    before_last = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

}  // namespace

std::optional<std::string> ClosestWord(const std::string& word, const std::vector<std::string>& words) {
  // A third of the letters may be wrong, and never more than three. Nothing has a name that long.
  constexpr std::size_t kMostWrong = 3;
  constexpr std::size_t kLongest = 64;
  if (word.size() > kLongest) {
    return std::nullopt;
  }
  std::size_t limit = std::min(kMostWrong, word.size() / 3) + 1;
  std::optional<std::string> closest;
  for (const std::string& candidate : words) {
    const std::size_t distance = Distance(Lower(word), Lower(candidate));
    if (distance < limit) {
      limit = distance;
      closest = candidate;
    }
  }
  return closest;
}

}  // namespace kelsd_tool
