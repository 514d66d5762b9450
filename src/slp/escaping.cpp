// Escaping of attribute values, and the value of one attribute of a list. Stateless: any thread may call it.
#include <array>

#include "foundation/text.h"
#include "slp/error_map.h"
#include "slp/slp_impl.h"
#include "slp/slp_memory.h"

namespace kelsd {

namespace {

constexpr std::array<SLPErrorMapping, 3> kTextErrors{{
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
}};

using TextConversion = SLPError(SLPEXP_CALL*)(const char*, char**, SLPBoolean);

/// Runs SLPEscape or SLPUnescape on a value; `debug` names the caller and the call.
SResult ConvertText(TextConversion convert, const std::string& debug, std::string& out,
                    const std::string& in) {
  char* handed_out = nullptr;
  const SLPError code = convert(in.c_str(), &handed_out, SLP_FALSE);
  const SLPText converted(handed_out);
  if (code != SLP_OK) {
    return {MapSLPError(code, kTextErrors), "str: " + in, debug};
  }
  if (converted == nullptr) {
    return {SResult::ERR_UNKNOWN, "str: " + in, debug + " NULL"};
  }
  out = converted.get();
  return {SResult::ERR_SUCCESS};
}

}  // namespace

SResult CKelSLPImpl::EscapeSLPCharacters(std::string& out, const std::string& in) {
  return ConvertText(&SLPEscape, "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape", out, in);
}

SResult CKelSLPImpl::UnescapeSLPCharacters(std::string& out, const std::string& in) {
  return ConvertText(&SLPUnescape, "kelsd::CKelSLPImpl::UnescapeSLPCharacters SLPUnescape", out, in);
}

SResult CKelSLPImpl::ParseAttribute(std::string& value, const std::string& tag,
                                    const std::string& attributeList) {
  const std::string trimmed = Trim(tag);
  const SResult valid = ValidateTag(trimmed);
  if (valid.IsNotOk()) {
    return valid.PrependErrorDebug("kelsd::CKelSLPImpl::ParseAttribute", " ");
  }
  char* handed_out = nullptr;
  const SLPError code = SLPParseAttrs(attributeList.c_str(), trimmed.c_str(), &handed_out);
  const SLPText raw(handed_out);
  if (code != SLP_OK) {
    return {MapSLPError(code, kTextErrors), "", "kelsd::CKelSLPImpl::ParseAttribute SLPParseAttrs"};
  }
  if (raw == nullptr) {
    return {SResult::ERR_UNKNOWN, "", "kelsd::CKelSLPImpl::ParseAttribute SLPParseAttrs NULL"};
  }
  const SResult unescaped = UnescapeSLPCharacters(value, raw.get());
  if (unescaped.IsNotOk()) {
    return {SResult::ERR_VALUE_BAD_CHARACTERS,
            unescaped.GetErrorDescription() + ". " + unescaped.GetErrorDetail(),
            "kelsd::CKelSLPImpl::ParseAttribute " + unescaped.GetErrorDebug()};
  }
  return {SResult::ERR_SUCCESS};
}

}  // namespace kelsd
