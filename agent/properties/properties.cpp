#include "properties/properties.h"

#include <array>

#include "properties/catalogue.h"
#include "properties/file_text.h"
#include "properties/platform_files.h"
#include "properties/property_values.h"
#include "text/fold.h"
#include "text/string_list.h"

namespace slp {
namespace {

// Why a line cannot be used; empty when it can.
std::string FindFault(const PropertyLine& line) {
  if (line.key.empty()) {
    return "neither a comment nor \"key = value\"";
  }
  if (!IsPropertyKey(line.key)) {
    return "what stands before the = is no key: a blank is in it, or a character that is not printable ASCII";
  }
  if (IsReadOnlyProperty(line.key)) {
    return line.key + " cannot be set";
  }
  const PropertyInfo* const property = FindProperty(line.key);
  if (property == nullptr || IsAllowed(*property, line.value)) {
    return {};
  }
  return line.key + " must be " + DescribeAllowedValues(*property) + ", not \"" + line.value + "\"";
}

struct NamedFile {
  const std::string& path;
  std::string_view key;
};

std::array<NamedFile, 3> NamedFiles(const PropertyFiles& files) {
  return {{{files.global, kGlobalFileKey},
           {files.environment, kEnvironmentFileKey},
           {files.application, kApplicationFileKey}}};
}

}  // namespace

PropertyFiles PropertyFiles::Default() {
  PropertyFiles files;
  files.global = DefaultGlobalPropertyFile();
  files.environment = Trim(EnvironmentVariable("OpenSLPConfig"));
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

PropertyTexts PropertyTexts::Read(const PropertyFiles& files) {
  PropertyTexts texts;
  for (const auto& [path, key] : NamedFiles(files)) {
    if (!path.empty()) {
      const std::optional<FileStamp> stamp = StampOf(path);
      texts.files.push_back({path, key, ReadFileText(path), stamp});
    }
  }
  return texts;
}

bool PropertyTexts::AreStillOf(const PropertyFiles& named) const {
  auto file = files.begin();
  for (const auto& [path, key] : NamedFiles(named)) {
    if (path.empty()) {
      continue;
    }
    if (file == files.end() || file->path != path || file->key != key ||
        !IsUnchanged(file->stamp, StampOf(path))) {
      return false;
    }
    ++file;
  }
  return file == files.end();
}

Properties Properties::Load(const PropertyFiles& files, std::vector<PropertyProblem>& problems) {
  return Load(PropertyTexts::Read(files), files.required, problems);
}

Properties Properties::Load(const PropertyTexts& texts, bool required,
                            std::vector<PropertyProblem>& problems) {
  Properties properties;
  for (const PropertyTexts::File& file : texts.files) {
    if (!file.text) {
      if (required) {
        problems.push_back({file.path, 0, "cannot be opened"});
      }
      continue;
    }
    properties.Set(file.key, file.path);
    for (PropertyLine& line : ParsePropertyLines(*file.text)) {
      std::string fault = FindFault(line);
      if (fault.empty()) {
        properties.Set(line.key, std::move(line.value));
      } else {
        problems.push_back({file.path, line.number, std::move(fault)});
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

// 1. Of a list of hosts the others are of use without the one that is none.
// 2. The whole value is kept for who asks what the file says.
void Properties::LeaveOut(PropertyLine line) {
  const PropertyInfo* const property = FindProperty(line.key);
  if (line.key.empty() || IsReadOnlyProperty(line.key)) {
    return;
  }
  if (property != nullptr && property->kind == PropertyKind::kHostList) {
    if (std::string hosts = UsableHosts(line.value); !hosts.empty()) {
      Set(line.key, std::move(hosts));
    }
  }
  if (property == nullptr || property->kind != PropertyKind::kBool) {
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
