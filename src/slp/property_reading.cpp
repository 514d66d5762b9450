// Reading one SLP property as the type that the configuration records hold. The caller holds the core lock.
#include <algorithm>

#include "config/integer_conversion.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "slp/slp_impl.h"

namespace kelsd {

namespace {

/// Reads the text of `property`; the debug trail of a failure begins with `reader`.
SResult ReadText(std::string& text, CKelSLPConfig::EProperty property, const char* reader) {
  const SResult result = CKelSLPImpl::GetSLPProperty(text, CKelSLPConfig::ToStringKey(property));
  return result.IsOk() ? result : result.PrependErrorDebug(reader, " ");
}

/// Reads `property` and stores what `parse` makes of its text.
template <typename T>
SResult ReadParsed(T& value, CKelSLPConfig::EProperty property, const char* reader,
                   SResult (*parse)(T&, const std::string&)) {
  std::string text;
  SResult read = ReadText(text, property, reader);
  if (read.IsNotOk()) {
    return read;
  }
  const SResult parsed = parse(value, text);
  if (parsed.IsNotOk()) {
    return {SResult::ERR_PROPERTY_PARSE,
            "Property: " + CKelSLPConfig::ToString(property) + ". " + parsed.GetErrorDetail(),
            reader + (" " + parsed.GetErrorDebug())};
  }
  return {SResult::ERR_SUCCESS};
}

}  // namespace

SResult CKelSLPImpl::GetSLPProperty(std::string& value, const std::string& key) {
  const char* text = SLPGetProperty(key.c_str());
  if (text == nullptr) {
    return {SResult::ERR_PROPERTY_GET, "Property name: " + key, "kelsd::CKelSLPImpl::GetSLPProperty"};
  }
  value = text;
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::GetStringProperty(std::string& value, const CKelSLPConfig::EProperty& property) {
  return ReadText(value, property, "kelsd::CKelSLPImpl::GetStringProperty");
}

SResult CKelSLPImpl::GetBoolProperty(bool& value, const CKelSLPConfig::EProperty& property) {
  std::string text;
  SResult read = ReadText(text, property, "kelsd::CKelSLPImpl::GetBoolProperty");
  if (read.IsOk()) {
    value = IsTrueFlag(text);
  }
  return read;
}

SResult CKelSLPImpl::GetNumericProperty(int& value, const CKelSLPConfig::EProperty& property) {
  return ReadParsed(value, property, "kelsd::CKelSLPImpl::GetNumericProperty", &ParseNumericProperty);
}

SResult CKelSLPImpl::GetStringListProperty(std::vector<std::string>& value,
                                           const CKelSLPConfig::EProperty& property) {
  std::string text;
  SResult read = ReadText(text, property, "kelsd::CKelSLPImpl::GetStringListProperty");
  if (read.IsOk()) {
    value = SplitList(text);
  }
  return read;
}

SResult CKelSLPImpl::GetTimeoutList(std::vector<int>& value, const CKelSLPConfig::EProperty& property) {
  return ReadParsed(value, property, "kelsd::CKelSLPImpl::GetTimeoutList", &ParseTimeoutsList);
}

SResult CKelSLPImpl::ParseNumericProperty(int& value, const std::string& text) {
  try {
    value = ParseInteger(text);
  } catch (const BadConversionException& exception) {
    return {SResult::ERR_INVALID_PARAMETER, exception.what(), "kelsd::CKelSLPImpl::ParseNumericProperty"};
  }
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::ParseTimeoutsList(std::vector<int>& value, const std::string& text) {
  std::vector<std::string> pieces = SplitList(text);
  pieces.resize(std::min<std::size_t>(pieces.size(), CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES));
  std::vector<int> timeouts;
  try {
    for (const std::string& piece : pieces) {
      const std::string trimmed = Trim(piece);
      const int timeout = trimmed.empty() ? 0 : ParseInteger(trimmed);
      if (timeout == 0) {
        break;
      }
      timeouts.push_back(timeout);
    }
  } catch (const BadConversionException& exception) {
    return {SResult::ERR_INVALID_PARAMETER, exception.what(), "kelsd::CKelSLPImpl::ParseTimeoutsList"};
  }
  value = std::move(timeouts);
  return {SResult::ERR_SUCCESS};
}

void CKelSLPImpl::SetSLPProperty(const CKelSLPConfig::EProperty& property, const std::string& value) {
  SLPSetProperty(CKelSLPConfig::ToStringKey(property).c_str(), value.c_str());
}

}  // namespace kelsd
