// The normal form of attribute values, in which two values that a search takes for equal are the same bytes,
// and the keys made of it for the equality index. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/attributes.h"

namespace slp {

/// Values of different types are always different (RFC 2608 section 8.1).
std::string ValueNormalForm(const AttributeValue& value);

/// `type` tells one service type from another.
std::uint32_t AttributeKey(std::uint32_t type, std::string_view folded_tag, const AttributeValue& value);

/// The keys of all values in `attributes`, each once.
std::vector<std::uint32_t> AttributeKeys(std::uint32_t type, const AttributeList& attributes);

}  // namespace slp
