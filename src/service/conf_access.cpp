#include "service/conf_access.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

#include "foundation/text.h"
#include "platform/file_system.h"
#include "service/folders.h"

namespace kelsd {

namespace {

constexpr std::uint32_t kPauseBetweenTries = 5;

bool IsComment(const std::string& text) {
  return text.empty() || text.front() == ';' || text.front() == '#';
}

// By the stream's own reading, which tells of a failure; its iterators throw one.
bool ReadAll(const std::string& name, std::string& content) {
  std::ifstream file(name, std::ios::binary);
  std::array<char, 4096> block{};
  const bool opened = file.is_open();
  while (file) {
    file.read(block.data(), block.size());
    content.append(block.data(), static_cast<std::size_t>(file.gcount()));
  }
  return opened && !file.bad();
}

}  // namespace

CSLPConfAccess::CSLPConfAccess(platform::Clock& clock) : clock_(clock) {}

CSLPConfAccess::~CSLPConfAccess() {
  if (created_) {
    file_->RemoveWhenClosed();
  }
}

// 1. Try until it succeeds or more than the time-out has passed since the first try.
// 2. Load.
CSLPConfAccess::Status CSLPConfAccess::Open(const std::string& fileName, bool lock, int timeoutSeconds) {
  file_name_ = fileName;
  if (!lock) {
    return LoadUnlocked();
  }
  std::int64_t first_try = clock_.Now();
  while ((file_ = platform::ExclusiveFile::Open(file_name_, created_)) == nullptr) {
    created_ = false;
    const std::int64_t now = clock_.Now();
    // A clock that is set back meanwhile doesn't make the wait endless.
    first_try = std::min(first_try, now);
    if (now - first_try > timeoutSeconds) {
      timed_out_ = true;
      return Status::kOpenFailed;
    }
    clock_.Sleep(kPauseBetweenTries);
  }
  std::string content;
  if (!file_->Read(content)) {
    return Status::kLoadFailed;
  }
  Parse(content);
  return Status::kSuccess;
}

CSLPConfAccess::Status CSLPConfAccess::LoadUnlocked() {
  if (!platform::FileExists(file_name_)) {
    return Status::kSuccess;
  }
  std::string content;
  if (!ReadAll(file_name_, content)) {
    return Status::kLoadFailed;
  }
  Parse(content);
  return Status::kSuccess;
}

void CSLPConfAccess::Parse(const std::string& content) {
  std::size_t begin = 0;
  while (begin < content.size()) {
    const std::size_t end = std::min(content.find('\n', begin), content.size());
    std::string line = content.substr(begin, end - begin);
    begin = end + 1;
    RemoveSuffix(line, "\r");
    const std::size_t equals = line.find('=');
    std::string key = equals == std::string::npos ? std::string() : Trim(line.substr(0, equals));
    if (IsComment(line) || IsComment(key)) {
      Append({std::nullopt, std::move(line)});
    } else {
      Append({std::move(key), Trim(line.substr(equals + 1))});
    }
  }
}

void CSLPConfAccess::Append(Line line) {
  if (line.key) {
    lines_of_key_[*line.key].push_back(lines_.size());
  }
  lines_.push_back(std::move(line));
}

bool CSLPConfAccess::HasKey(const std::string& key) const {
  return lines_of_key_.count(Trim(key)) != 0;
}

std::string CSLPConfAccess::GetValue(const std::string& key) const {
  const auto found = lines_of_key_.find(Trim(key));
  return found == lines_of_key_.end() ? std::string() : lines_[found->second.back()].text;
}

void CSLPConfAccess::SetValue(const std::string& key, const std::string& value) {
  const std::string trimmed = Trim(value);
  const auto found = lines_of_key_.find(Trim(key));
  if (found == lines_of_key_.end()) {
    Append({Trim(key), trimmed});
    changed_ = true;
    return;
  }
  for (const std::size_t number : found->second) {
    changed_ = changed_ || lines_[number].text != trimmed;
    lines_[number].text = trimmed;
  }
}

CSLPConfAccess::Status CSLPConfAccess::Update() {
  if (!changed_) {
    return Status::kSuccess;
  }
  const std::string content = Content();
  if (!(file_ != nullptr ? file_->Replace(content) : WriteUnlocked(content))) {
    return Status::kWriteFailed;
  }
  changed_ = false;
  created_ = false;
  return Status::kSuccess;
}

std::string CSLPConfAccess::Content() const {
  std::string content;
  for (const Line& line : lines_) {
    if (line.key) {
      content.append(*line.key).append(" = ");
    }
    content.append(line.text).append("\r\n");
  }
  return content;
}

bool CSLPConfAccess::WriteUnlocked(const std::string& content) const {
  if (!CreateMissingFolders(FolderOf(file_name_))) {
    return false;
  }
  std::ofstream file(file_name_, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  return !file.fail();
}

SResult::EError ConvertConfigFileStatus(CSLPConfAccess::Status status) {
  switch (status) {
    case CSLPConfAccess::Status::kSuccess:
      return SResult::ERR_SUCCESS;
    case CSLPConfAccess::Status::kOpenFailed:
      return SResult::ERR_CONF_OPEN;
    case CSLPConfAccess::Status::kLoadFailed:
      return SResult::ERR_CONF_LOAD;
    case CSLPConfAccess::Status::kWriteFailed:
      return SResult::ERR_CONF_WRITE;
  }
  return SResult::ERR_UNKNOWN;
}

}  // namespace kelsd
