// Comma-separated lists of strings: scopes, attribute tags, previous responders, service types (RFC 2608
// section 5). Pure functions; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace slp {

/// The elements, trimmed, empty ones left out, in the order given. Never fails: "," is the empty list.
std::vector<std::string> SplitStringList(std::string_view text);

std::string JoinStringList(const std::vector<std::string>& elements);

/// Whether `list` holds an element that compares equal to `element` as SLP compares strings.
bool ListContains(const std::vector<std::string>& list, std::string_view element);

/// Whether the two lists have an element in common.
bool ListsIntersect(const std::vector<std::string>& a, const std::vector<std::string>& b);

/// Whether every element of `inner` is in `outer`.
bool ListContainsAll(const std::vector<std::string>& outer, const std::vector<std::string>& inner);

/// `base` followed by those elements of `more` that it lacks.
std::vector<std::string> ListUnion(std::vector<std::string> base, const std::vector<std::string>& more);

/// Whether `scope` may be a scope name (RFC 2608 section 6.4.1): not empty, none of `(),\!<=>~;*+` and no
/// control characters, except in escaped form.
bool IsValidScope(std::string_view scope);

}  // namespace slp
