#include "properties/properties.h"

#include "properties/catalogue.h"
#include "properties/platform_files.h"
#include "properties/property_values.h"
#include "text/string_list.h"

namespace slp {
namespace {

// Why a line cannot be used; empty when it can.
std::string FindFault(const PropertyLine& line) {
  if (IsReadOnlyProperty(line.key)) {
    return line.key + " cannot be set";
  }
  const PropertyInfo* const property = FindProperty(line.key);
  if (property == nullptr || IsAllowed(*property, line.value)) {
    return {};
  }
  return line.key + " must be " + DescribeAllowedValues(*property) + ", not \"" + line.value + "\"";
}

}  // namespace

PropertyFiles PropertyFiles::Default() {
  PropertyFiles files;
  files.global = DefaultGlobalPropertyFile();
  files.environment = EnvironmentVariable("OpenSLPConfig");
  return files;
}

std::string PropertyProblem::ToString() const {
  return file + ":" + (line > 0 ? std::to_string(line) + ":" : "") + " " + text;
}

Properties::Properties() {
  for (const PropertyInfo& property : PropertyCatalogue()) {
    values_.emplace(property.key, property.default_value);
  }
}

Properties Properties::Load(const PropertyFiles& files, std::vector<PropertyProblem>& problems) {
  struct Source {
    const std::string& path;
    std::string_view key;
  };
  Properties properties;
  for (const Source& source :
       {Source{files.global, kGlobalFileKey}, Source{files.environment, kEnvironmentFileKey},
        Source{files.application, kApplicationFileKey}}) {
    if (source.path.empty()) {
      continue;
    }
    std::optional<std::vector<PropertyLine>> lines = ReadPropertyFile(source.path);
    if (!lines) {
      if (files.required) {
        problems.push_back({source.path, 0, "cannot be opened"});
      }
      continue;
    }
    properties.Set(source.key, source.path);
    for (PropertyLine& line : *lines) {
      std::string fault = FindFault(line);
      if (fault.empty()) {
        properties.Set(line.key, std::move(line.value));
      } else {
        problems.push_back({source.path, line.number, std::move(fault)});
        properties.LeaveOut(std::move(line));
      }
    }
  }
  return properties;
}

std::optional<std::string> Properties::Get(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> Properties::Stated(std::string_view key) const {
  const auto found = left_out_.find(key);
  return found == left_out_.end() ? Get(key) : std::optional(found->second);
}

void Properties::Set(std::string_view key, std::string value) {
  values_.insert_or_assign(std::string(key), std::move(value));
  if (const auto found = left_out_.find(key); found != left_out_.end()) {
    left_out_.erase(found);
  }
}

void Properties::LeaveOut(PropertyLine line) {
  const PropertyInfo* const property = FindProperty(line.key);
  if (property != nullptr && !property->read_only && property->kind != PropertyKind::kBool) {
    left_out_.insert_or_assign(std::move(line.key), std::move(line.value));
  }
}

bool Properties::GetBool(std::string_view key) const {
  const PropertyInfo* const property = FindProperty(key);
  if (property == nullptr) {
    return false;
  }
  return ToBool(GetString(key)).value_or(property->default_value == "true");
}

int Properties::GetInt(std::string_view key) const {
  const PropertyInfo* const property = FindProperty(key);
  if (property == nullptr) {
    return 0;
  }
  const std::optional<int> value = ToInt(GetString(key), property->least, property->most);
  return value ? *value : ToInt(property->default_value, property->least, property->most).value_or(0);
}

std::vector<int> Properties::GetIntList(std::string_view key) const {
  const PropertyInfo* const property = FindProperty(key);
  if (property == nullptr) {
    return {};
  }
  std::optional<std::vector<int>> value = ToIntList(GetString(key), property->least, property->most);
  if (!value) {
    value = ToIntList(property->default_value, property->least, property->most);
  }
  return value.value_or(std::vector<int>());
}

std::vector<std::string> Properties::GetStringList(std::string_view key) const {
  return SplitStringList(GetString(key));
}

std::string Properties::GetString(std::string_view key) const {
  return Get(key).value_or("");
}

}  // namespace slp
