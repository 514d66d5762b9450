// Property files (RFC 2614 section 2.1), and the settings that are made from what stands in them.
#include "properties/property_file.h"

#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "properties/catalogue.h"
#include "properties/property_values.h"
#include "slpd/agent_settings.h"
#include "text/fold.h"

namespace slp::fuzz {
namespace {

void CheckReading(const PropertyInfo& property, const Properties& properties) {
  static_cast<void>(properties.GetBool(property.key));
  static_cast<void>(properties.GetStringList(property.key));
  if (property.kind == PropertyKind::kInt) {
    const int value = properties.GetInt(property.key);
    Require(value >= property.least && value <= property.most, "a number is in its range, whatever was set");
  }
  for (const int value : properties.GetIntList(property.key)) {
    Require(property.kind != PropertyKind::kTimeouts || value > 0, "a time to wait is more than nothing");
  }
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using slp::fuzz::Require;
  slp::Properties properties;
  int last_line = 0;
  for (const slp::PropertyLine& line : slp::ParsePropertyLines(slp::fuzz::TextOf(data, size))) {
    Require(line.number > last_line, "line numbers grow");
    last_line = line.number;
    if (line.key.empty()) {
      Require(line.value.empty(), "what sets nothing has no value");
      continue;
    }
    Require(slp::Trim(line.key) == line.key, "a key is without blanks around it");
    Require(!line.value.empty() && slp::Trim(line.value) == line.value, "so is a value");
    const slp::PropertyInfo* const known = slp::FindProperty(line.key);
    if (known != nullptr) {
      static_cast<void>(slp::IsAllowed(*known, line.value));
    }
    properties.Set(line.key, line.value);
  }
  for (const slp::PropertyInfo& property : slp::PropertyCatalogue()) {
    slp::fuzz::CheckReading(property, properties);
  }
  Require(!slp::AgentSettings::From(properties).scopes.empty(), "some scope is served");
  return 0;
}
