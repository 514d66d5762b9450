// The record of the attributes of a found service.
#include <locale>
#include <sstream>

#include "kelsd/SKelServiceAttributeSearchResult.h"

namespace kelsd {

SKelServiceAttributeSearchResult::SKelServiceAttributeSearchResult(const std::string& attributeString)
    : AttributeString(attributeString) {}

std::string SKelServiceAttributeSearchResult::ToString() {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "AttributeString = " << AttributeString << "\n"
       << "Attributes: ";
  if (Attributes.empty()) {
    text << "no attributes parsed\n";
  } else {
    text << Attributes.size() << " parsed\n";
  }
  for (const auto& [tag, value] : Attributes) {
    text << "  '" << static_cast<int>(tag) << "' = '" << value << "'\n";
  }
  return text.str();
}

}  // namespace kelsd
