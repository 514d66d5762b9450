// A file's whole text: property files and registration files are read so. Reads files; no state, any thread.
#pragma once

#include <optional>
#include <string>

namespace slp {

/// What stands in a file; none when it cannot be opened or, as a folder, not be read to its end.
std::optional<std::string> ReadFileText(const std::string& path);

}  // namespace slp
