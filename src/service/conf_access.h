// The store of one SLP configuration file. One thread an object.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kelsd/SResult.h"
#include "platform/clock.h"
#include "platform/exclusive_file.h"

namespace kelsd {

/// One configuration file as lines, of which some are "key = value". Comments, unknown keys and the order of
/// lines stay as they are. Keys are compared exactly, but for white space around them. When a key stands in
/// the file more than once the last line counts, and setting it changes all of them.
class CSLPConfAccess {
 public:
  enum class Status { kSuccess, kOpenFailed, kLoadFailed, kWriteFailed };

  explicit CSLPConfAccess(platform::Clock& clock);
  /// Closes the file. One that this store has created and never wrote is removed again.
  ~CSLPConfAccess();
  CSLPConfAccess(const CSLPConfAccess&) = delete;
  CSLPConfAccess& operator=(const CSLPConfAccess&) = delete;

  /// Opens and loads the file; once an object. With `lock` a missing file is created and no other store gets
  /// in until this one is gone; while another one is in, or the file cannot be opened for other reasons, it
  /// tries again for more than `timeoutSeconds`. Without `lock` the file is only read now and written anew by
  /// Update; a missing one counts as empty.
  [[nodiscard]] Status Open(const std::string& fileName, bool lock, int timeoutSeconds);
  /// Whether the last opening ended because the time was up.
  bool HasTimedOut() const { return timed_out_; }

  bool HasKey(const std::string& key) const;
  /// Empty when there is no such key.
  std::string GetValue(const std::string& key) const;
  /// A key that doesn't stand in the file yet comes last.
  void SetValue(const std::string& key, const std::string& value);

  /// Writes the file when something was changed.
  [[nodiscard]] Status Update();

 private:
  struct Line {
    std::optional<std::string> key;
    std::string text;  ///< the value of the key, or the whole line
  };

  Status LoadUnlocked();
  void Parse(const std::string& content);
  void Append(Line line);
  std::string Content() const;
  bool WriteUnlocked(const std::string& content) const;

  platform::Clock& clock_;
  std::string file_name_;
  std::unique_ptr<platform::ExclusiveFile> file_;
  std::vector<Line> lines_;
  std::map<std::string, std::vector<std::size_t>> lines_of_key_;
  bool changed_ = false;
  bool created_ = false;
  bool timed_out_ = false;
};

/// The code that stands for a status.
SResult::EError ConvertConfigFileStatus(CSLPConfAccess::Status status);

}  // namespace kelsd
