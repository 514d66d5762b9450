#include "api/text_calls.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "api/c_memory.h"
#include "api/error_mapping.h"
#include "api/guard.h"
#include "api/reply_text.h"
#include "text/attributes.h"
#include "text/characters.h"
#include "text/escape.h"

namespace slp::client {
namespace {

bool HasBadTagCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(), IsBadInTag);
}

/// Hands out the text of `result` in `*out`.
SLPError HandOut(const Result<std::string>& result, char** out) {
  if (result) {
    *out = NewText(*result);
  }
  return ToSlpError(result.error());
}

}  // namespace

SLPError ParseUrlCall(const char* text, SLPSrvURL** url) noexcept {
  if (text == nullptr || url == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *url = nullptr;
  return Guarded([&] {
    const Result<ServiceUrl> parsed = ParseServiceUrl(text);
    if (parsed) {
      *url = NewUrl(*parsed);
    }
    return ToSlpError(parsed.error());
  });
}

SLPError ParseAttributeCall(const char* list, const char* tag, char** value) noexcept {
  if (list == nullptr || tag == nullptr || value == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *value = nullptr;
  return Guarded([&] { return HandOut(RawAttributeValue(list, tag), value); });
}

SLPError EscapeCall(const char* text, char** escaped, bool is_tag) noexcept {
  if (text == nullptr || escaped == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *escaped = nullptr;
  if (is_tag && HasBadTagCharacter(text)) {
    return SLP_PARSE_ERROR;
  }
  return Guarded([&] { return HandOut(Escape(text), escaped); });
}

SLPError UnescapeCall(const char* text, char** unescaped, bool is_tag) noexcept {
  if (text == nullptr || unescaped == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *unescaped = nullptr;
  return Guarded([&] {
    const Result<std::string> plain = Unescape(text);
    if (plain && (!IsWholeText(*plain) || (is_tag && HasBadTagCharacter(*plain)))) {
      return SLP_PARSE_ERROR;
    }
    return HandOut(plain, unescaped);
  });
}

}  // namespace slp::client
