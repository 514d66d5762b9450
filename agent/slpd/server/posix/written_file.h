// Opens the files that the daemon writes. It may be the administrator, and the folder one in which others can
// prepare what the file's name leads to. Any thread.
#pragma once

#include <sys/types.h>

#include <string>

namespace slp {

enum class WrittenFile {
  kRegular,          ///< nothing but a file
  kRegularOrDevice,  ///< also a terminal, /dev/null and their like
};

/// A descriptor that the caller closes, or -1: `reason` then says why, and what to do. `flags` are those of
/// open(2) that say how to write; a missing file is created with `permissions`, less the process's mask.
/// Never waits, and neither does writing to a device. Changes nothing of what is there: a file that is
/// to be empty is emptied afterwards.
///
/// Refused are a symbolic link (folders on the way may be links), a file that goes by a second name, and what
/// `kind` excludes: a pipe without a reader would hold up the daemon, and a file of somebody else's be
/// written with the daemon's rights.
int OpenWrittenFile(const std::string& path, int flags, mode_t permissions, WrittenFile kind,
                    std::string& reason);

}  // namespace slp
