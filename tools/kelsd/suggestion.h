// Guessing which word was meant by one that is not known. Stateless: any thread may call it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelsd_tool {

/// The one of `words` that is `word` but for letter case or a few letters; none when none is close.
std::optional<std::string> ClosestWord(const std::string& word, const std::vector<std::string>& words);

}  // namespace kelsd_tool
