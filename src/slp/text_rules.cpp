// What may name an attribute or a scope, and the lists of them that go into SLP requests. Stateless: any
// thread may call it.
#include <algorithm>
#include <set>
#include <string_view>

#include "foundation/text.h"
#include "slp/slp_impl.h"

namespace kelsd {

namespace {

constexpr std::string_view kTagForbidden = "_*(),\\!<=>~";
constexpr std::string_view kScopeForbidden = "(),\\!<=>~;*+";

/// Control characters and white space are forbidden everywhere; bytes from 0x80 on are neither.
bool IsControlOrBlank(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte <= 0x20 || byte == 0x7F;
}

bool HasBadCharacters(std::string_view text, std::string_view forbidden) {
  return std::any_of(text.begin(), text.end(), [&](char character) {
    return IsControlOrBlank(character) || forbidden.find(character) != std::string_view::npos;
  });
}

void AppendSeparator(std::string& list) {
  if (!list.empty()) {
    list += ',';
  }
}

}  // namespace

SResult CKelSLPImpl::ValidateTag(const std::string& tag) {
  if (tag.empty()) {
    return {SResult::ERR_TAG_EMPTY, "", "kelsd::CKelSLPImpl::ValidateTag"};
  }
  if (HasBadCharacters(tag, kTagForbidden)) {
    return {SResult::ERR_TAG_BAD_CHARACTERS, "tag: " + tag, "kelsd::CKelSLPImpl::ValidateTag"};
  }
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::ValidateScope(const std::string& scope) {
  if (scope.empty()) {
    return {SResult::ERR_SCOPE_EMPTY, "", "kelsd::CKelSLPImpl::ValidateScope"};
  }
  if (HasBadCharacters(scope, kScopeForbidden)) {
    return {SResult::ERR_SCOPE_BAD_CHARACTERS, "scope = " + scope, "kelsd::CKelSLPImpl::ValidateScope"};
  }
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::CreateScopesList(std::string& list, const std::vector<std::string>& scopes) {
  std::string built;
  for (const std::string& scope : scopes) {
    const SResult valid = ValidateScope(Trim(scope));
    if (valid.IsNotOk()) {
      return valid.PrependErrorDebug("kelsd::CKelSLPImpl::CreateScopesList", " ");
    }
    AppendSeparator(built);
    // White space at the ends is the caller's and stays; only the test leaves it out.
    built += scope;
  }
  list = std::move(built);
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::CreateAttributeTagsList(std::string& list, const std::vector<std::string>& tags) {
  std::string built;
  std::set<std::string> seen;
  for (const std::string& tag : tags) {
    const std::string trimmed = Trim(tag);
    const SResult valid = ValidateTag(trimmed);
    if (valid.IsNotOk()) {
      return valid.PrependErrorDebug("kelsd::CKelSLPImpl::CreateAttributeTagsList", " ");
    }
    if (seen.insert(ToLower(trimmed)).second) {
      AppendSeparator(built);
      built += trimmed;
    }
  }
  list = std::move(built);
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::CreateSLPAttributeList(std::string& list,
                                            const std::map<std::string, std::string>& attributes) {
  std::string built;
  std::set<std::string> seen;
  for (const auto& [tag, value] : attributes) {
    const std::string trimmed = Trim(tag);
    const SResult valid = ValidateTag(trimmed);
    if (valid.IsNotOk()) {
      return valid.PrependErrorDebug("kelsd::CKelSLPImpl::CreateSLPAttributeList", " ");
    }
    if (!seen.insert(ToLower(trimmed)).second) {
      std::string detail = "tag: ";
      detail.append(tag).append(", value: ").append(value);
      return {SResult::ERR_TAG_NOT_UNIQUE, detail, "kelsd::CKelSLPImpl::CreateSLPAttributeList"};
    }
    std::string escaped;
    const SResult escaping = EscapeSLPCharacters(escaped, value);
    if (escaping.IsNotOk()) {
      return escaping.PrependErrorDebug("kelsd::CKelSLPImpl::CreateSLPAttributeList", " ");
    }
    AppendSeparator(built);
    built.append("(").append(trimmed).append("=").append(escaped).append(")");
  }
  list = std::move(built);
  return {SResult::ERR_SUCCESS};
}

}  // namespace kelsd
