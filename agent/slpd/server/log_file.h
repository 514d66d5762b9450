// Opens the file of the daemon's log. One thread at a time.
#pragma once

#include <memory>
#include <ostream>
#include <string>

namespace slp {

/// The file, created if need be, at whose end writing goes on with `append`, emptied without. None when it
/// can't be opened: `problem` then says why, and what to do. On POSIX systems it is a regular file or a
/// terminal, /dev/null and their like; refused are a symbolic link, unless it is a folder on the way, and a
/// file with a second name: the daemon may be the administrator, and what they lead to somebody else's.
std::unique_ptr<std::ostream> OpenLogFile(const std::string& path, bool append, std::string& problem);

}  // namespace slp
