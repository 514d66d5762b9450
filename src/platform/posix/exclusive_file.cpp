#include "platform/exclusive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace kelsd::platform {
namespace {

class LockedFile : public ExclusiveFile {
 public:
  explicit LockedFile(std::string name) : name_(std::move(name)) {}
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;
  ~LockedFile() override {
    if (descriptor_ < 0) {
      return;
    }
    // While the lock is held: whoever gets it next finds out that the file has gone.
    if (remove_) {
      unlink(name_.c_str());
    }
    close(descriptor_);
  }

  bool Open(bool& created) {
    created = true;
    descriptor_ = open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (descriptor_ < 0 && errno == EEXIST) {
      created = false;
      descriptor_ = open(name_.c_str(), O_RDWR | O_CLOEXEC);
    }
    // The file may have been removed between opening and locking it.
    struct stat entry {};
    return descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) == 0 &&
           fstat(descriptor_, &entry) == 0 && entry.st_nlink > 0;
  }

  bool Read(std::string& content) override {
    std::string text;
    std::array<char, 65536> block;
    off_t at = 0;
    for (;;) {
      const ssize_t got = pread(descriptor_, block.data(), block.size(), at);
      if (got < 0 && errno == EINTR) {
        continue;
      }
      if (got < 0) {
        return false;
      }
      if (got == 0) {
        content = std::move(text);
        return true;
      }
      text.append(block.data(), static_cast<std::size_t>(got));
      at += got;
    }
  }

  // 1. Reserve the room that the longer content takes: a full disk is found out before anything is lost.
  // 2. Write from the start, then cut off what is left of a longer old content, then bring it to the disk.
  bool Replace(const std::string& content) override {
    struct stat before {};
    if (fstat(descriptor_, &before) != 0) {
      return false;
    }
    const auto size = static_cast<off_t>(content.size());
    if (size > before.st_size && !Reserve(before.st_size, size)) {
      return false;
    }
    off_t at = 0;
    while (at < size) {
      const ssize_t put = pwrite(descriptor_, content.data() + at, static_cast<std::size_t>(size - at), at);
      if (put < 0 && errno == EINTR) {
        continue;
      }
      if (put <= 0) {
        return false;
      }
      at += put;
    }
    return ftruncate(descriptor_, size) == 0 && fsync(descriptor_) == 0;
  }

  void RemoveWhenClosed() override { remove_ = true; }

 private:
  bool Reserve(off_t from, off_t to) {
    int error = 0;
    do {
      error = posix_fallocate(descriptor_, from, to - from);
    } while (error == EINTR);
    if (error == 0) {
      return true;
    }
    // The old content stays as it was, without what a partial reservation may have added.
    while (ftruncate(descriptor_, from) != 0 && errno == EINTR) {
    }
    return false;
  }

  int descriptor_ = -1;
  const std::string name_;
  bool remove_ = false;
};

}  // namespace

std::unique_ptr<ExclusiveFile> ExclusiveFile::Open(const std::string& name, bool& created) {
  // All memory is taken before the file is opened, so that no descriptor is lost when there is none.
  auto file = std::make_unique<LockedFile>(name);
  return file->Open(created) ? std::move(file) : nullptr;
}

}  // namespace kelsd::platform
