// The normal form of attribute values, in which two values that a search takes for equal are the same bytes,
// and a search's order is that of the bytes; and the keys made of it for the value index. Pure functions; any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "slpd/registry/value_index.h"
#include "text/attributes.h"

namespace slp {

/// Values of different types are always different (RFC 2608 section 8.1): the first byte tells the type.
inline constexpr char kStringForm = 's';
inline constexpr char kIntegerForm = 'i';
inline constexpr char kBooleanForm = 'b';
inline constexpr char kOpaqueForm = 'o';

/// One of the above and behind it the value.
std::string ValueNormalForm(const AttributeValue& value);

/// What the texts of the keys of one attribute begin with; behind it stands the normal form. `type` tells one
/// service type from another.
std::string AttributeKeyStart(std::uint32_t type, std::string_view folded_tag);

/// The texts of keys are cut to so many bytes. That keeps their order, but for equal ones.
inline constexpr std::size_t kLongestKeyText = 80;
std::string_view CutKeyText(std::string_view text);

ValueKey AttributeKey(std::uint32_t type, std::string_view folded_tag, const AttributeValue& value);

/// The keys of all values in `attributes`, each once, and one for each keyword, so that every attribute has a
/// key.
std::vector<ValueKey> AttributeKeys(std::uint32_t type, const AttributeList& attributes);

/// Bytes that these keys take at most in a ValueIndex, for one entry: as if no other had them.
std::size_t BytesOfAttributeKeys(const AttributeList& attributes);

}  // namespace slp
