#include "text/refresh_interval.h"

#include <algorithm>
#include <cstdint>
#include <variant>

#include "text/attributes.h"

namespace slp {

std::chrono::seconds AdvertisedRefreshInterval(std::string_view attributes) {
  const Result<AttributeList> list = AttributeList::Parse(attributes);
  const Attribute* attribute = list ? list->Find("min-refresh-interval") : nullptr;
  const auto* seconds = attribute != nullptr && attribute->values.size() == 1
                            ? std::get_if<std::int32_t>(&attribute->values.front().content)
                            : nullptr;
  return std::chrono::seconds(seconds == nullptr ? 0 : std::max(*seconds, 0));
}

}  // namespace slp
