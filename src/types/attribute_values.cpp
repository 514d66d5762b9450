#include "types/attribute_values.h"

#include "foundation/conversions.h"
#include "foundation/text.h"

namespace kelsd {

std::string PortToText(unsigned short port) {
  try {
    return Stringify<unsigned short>(port);
  } catch (const BadConversionException&) {
    return "0";
  }
}

unsigned short TextToPort(const std::string& text) {
  try {
    unsigned short port = 0;
    StringConvert<unsigned short>(text, port, true);
    return port;
  } catch (const BadConversionException&) {
    return 0;
  }
}

std::string AddressesToText(const std::vector<std::string>& addresses) {
  return Join(NormalizeList(addresses, false));
}

std::vector<std::string> TextToAddresses(const std::string& text) {
  return NormalizeList(SplitList(text), false);
}

}  // namespace kelsd
