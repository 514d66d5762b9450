// Text from the network made fit for a terminal, which would obey the control characters in it. Stateless:
// any thread may call it.
#pragma once

#include <string>

namespace kelsd_tool {

/// `text` with every control character (0x00 to 0x1F, 0x7F, and U+0080 to U+009F) and every byte that is no
/// UTF-8 as \xHH.
std::string PrintableText(const std::string& text);

/// `text` in one line: line ends, such as those of the system's words, and the blanks around them become one
/// blank.
std::string OneLine(const std::string& text);

/// A JSON document, which is UTF-8 and has no control characters below 0x20 in its texts, with the others as
/// \u00HH.
std::string PrintableJson(const std::string& document);

}  // namespace kelsd_tool
