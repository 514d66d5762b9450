#include "properties/process_properties.h"

#include <utility>
#include <vector>

#include "properties/catalogue.h"

namespace slp {

ProcessProperties::ProcessProperties(std::function<PropertyFiles()> find_files)
    : find_files_(std::move(find_files)) {}

ProcessProperties& ProcessProperties::Instance() {
  static auto* const instance = new ProcessProperties();
  return *instance;
}

void ProcessProperties::Acquire() {
  const std::lock_guard lock(mutex_);
  Load();
  ++handles_;
}

void ProcessProperties::Release() {
  const std::lock_guard lock(mutex_);
  if (handles_ > 0 && --handles_ == 0) {
    loaded_.reset();
  }
}

const char* ProcessProperties::Get(std::string_view key) {
  const std::lock_guard lock(mutex_);
  const Loaded& loaded = Load();
  if (const auto own = loaded.own.find(key); own != loaded.own.end()) {
    return Keep(own->second);
  }
  const std::optional<std::string> value = loaded.files->Stated(key);
  return value ? Keep(*value) : nullptr;
}

void ProcessProperties::Set(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mutex_);
  Loaded& loaded = Load();
  if (IsReadOnlyProperty(key)) {
    return;
  }
  loaded.snapshot.reset();
  if (!value.empty()) {
    loaded.own.insert_or_assign(std::string(key), std::string(value));
  } else if (const auto own = loaded.own.find(key); own != loaded.own.end()) {
    loaded.own.erase(own);
  }
}

bool ProcessProperties::SetApplicationFile(std::string path) {
  const std::lock_guard lock(mutex_);
  if (has_been_loaded_) {
    return false;
  }
  application_file_ = std::move(path);
  return true;
}

std::shared_ptr<const Properties> ProcessProperties::Snapshot() {
  const std::lock_guard lock(mutex_);
  Loaded& loaded = Load();
  if (loaded.own.empty()) {
    return loaded.files;
  }
  if (!loaded.snapshot) {
    Properties properties = *loaded.files;
    for (const auto& [key, value] : loaded.own) {
      properties.Set(key, value);
    }
    loaded.snapshot = std::make_shared<const Properties>(std::move(properties));
  }
  return loaded.snapshot;
}

ProcessProperties::Loaded& ProcessProperties::Load() {
  if (!loaded_) {
    PropertyFiles files = find_files_();
    files.application = application_file_;
    if (!of_texts_ || !texts_.AreStillOf(files)) {
      ReadFiles(files);
    }
    loaded_.emplace(Loaded{of_texts_, {}, nullptr});
    has_been_loaded_ = true;
  }
  return *loaded_;
}

void ProcessProperties::ReadFiles(const PropertyFiles& files) {
  PropertyTexts texts = PropertyTexts::Read(files);
  if (!of_texts_ || texts != texts_) {
    // The client half has no log; what a file says wrongly is shown by the daemon and the tool, which read it
    // too.
    std::vector<PropertyProblem> problems;
    of_texts_ = std::make_shared<const Properties>(Properties::Load(texts, files.required, problems));
  }
  texts_ = std::move(texts);
}

const char* ProcessProperties::Keep(std::string_view text) {
  const auto kept = kept_.find(text);
  return (kept != kept_.end() ? kept : kept_.emplace(text).first)->c_str();
}

}  // namespace slp
