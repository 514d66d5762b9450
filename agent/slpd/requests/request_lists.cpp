#include "slpd/requests/request_lists.h"

#include <algorithm>
#include <utility>

#include "text/string_list.h"
#include "text/tag.h"

namespace slp {

std::vector<std::string> ServedScopes(std::string_view text, const std::vector<std::string>& served) {
  std::vector<std::string> scopes = ListUnion({}, SplitStringList(text));
  scopes.erase(std::remove_if(scopes.begin(), scopes.end(),
                              [&](const std::string& scope) { return !ListContains(served, scope); }),
               scopes.end());
  return scopes;
}

Result<std::vector<std::string>> ParseTagList(std::string_view text) {
  std::vector<std::string> tags = SplitStringList(text);
  const auto has_wildcard = [](const std::string& tag) { return tag.find('*') != std::string::npos; };
  if (!std::all_of(tags.begin(), tags.end(), IsValidTagPattern) ||
      std::count_if(tags.begin(), tags.end(), has_wildcard) > kMaximumWildcardTags) {
    return Error::kParseError;
  }
  return tags;
}

}  // namespace slp
