// The text forms of attribute values that are not plain text: ports and lists of addresses. Nothing here
// fails or throws but for want of memory. Stateless: any thread may call it.
#pragma once

#include <string>
#include <vector>

namespace kelsd {

/// The port in decimal.
std::string PortToText(unsigned short port);
/// The port that `text` is, all of it but leading white space; 0 for any other text.
unsigned short TextToPort(const std::string& text);

/// The addresses trimmed, in upper case and sorted, with commas between them.
std::string AddressesToText(const std::vector<std::string>& addresses);
/// The addresses of a comma-separated list, brought into the same form.
std::vector<std::string> TextToAddresses(const std::string& text);

}  // namespace kelsd
