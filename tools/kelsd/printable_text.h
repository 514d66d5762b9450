// Text from the network made fit for a terminal, which would obey the control characters in it.
#pragma once

#include <string>

namespace kelsd_tool {

/// `text` with every control character (0x00 to 0x1F, and 0x7F) as \xHH.
std::string PrintableText(const std::string& text);

}  // namespace kelsd_tool
