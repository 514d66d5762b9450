// A file that one writer at a time has open. One thread at a time.
#pragma once

#include <memory>
#include <string>

namespace kelsd::platform {

/// An open file, for reading and writing. While it is open others may read it, but a second opening of this
/// kind, by any process, fails. Deleting it closes the file.
class ExclusiveFile {
 public:
  ExclusiveFile() = default;
  ExclusiveFile(const ExclusiveFile&) = delete;
  ExclusiveFile& operator=(const ExclusiveFile&) = delete;
  virtual ~ExclusiveFile() = default;

  /// One try to open the file, creating it when it is missing. Null when that fails. `created` tells whether
  /// the file did not exist before.
  static std::unique_ptr<ExclusiveFile> Open(const std::string& name, bool& created);

  /// The whole content. False when it cannot be read.
  [[nodiscard]] virtual bool Read(std::string& content) = 0;
  /// Replaces the whole content. False when not all of it reached the file; what the file holds then is the
  /// old or the new content where the system can keep one of them, else what could be written.
  [[nodiscard]] virtual bool Replace(const std::string& content) = 0;
  /// The file, which nobody has written, goes when this object does.
  virtual void RemoveWhenClosed() = 0;
};

}  // namespace kelsd::platform
