// What the system tells of a file without opening it, so that a file needn't be read to see that it says what
// it said before. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace slp {

/// Differs as soon as a file is written, replaced, made or removed, if it has `rested`: two changes within
/// what a file system calls the same time leave the same stamp.
struct FileStamp {
  std::array<std::int64_t, 5> marks{};  ///< device, inode, size, times; all 0: no such file
  bool rested = false;                  ///< the last change was well before the stamp was taken
};

/// None where the system does not tell, or not reliably: such a file has to be read.
std::optional<FileStamp> StampOf(const std::string& path);

/// Whether a file surely is what it was when it had the earlier stamp.
bool IsUnchanged(const std::optional<FileStamp>& earlier, const std::optional<FileStamp>& now);

}  // namespace slp
