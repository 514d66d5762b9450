#include "slpd/attribute_key.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <variant>

#include "text/fold.h"

namespace slp {
namespace {

/// Stands where the normal form of a value would.
constexpr std::string_view kKeyword = "k";

/// Most significant byte first, so that the bytes have the order of the numbers.
std::string BigEndian(std::uint32_t number) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) {
    bytes += static_cast<char>(static_cast<unsigned char>(number >> shift));
  }
  return bytes;
}

struct NormalForm {
  std::string operator()(const std::string& text) const { return kStringForm + Fold(text); }
  std::string operator()(std::int32_t number) const {
    // The negative ones before the others.
    return kIntegerForm + BigEndian(static_cast<std::uint32_t>(number) ^ 0x80000000U);
  }
  std::string operator()(bool truth) const { return {kBooleanForm, truth ? '1' : '0'}; }
  std::string operator()(const Opaque& bytes) const {
    return kOpaqueForm + std::string(bytes.begin(), bytes.end());
  }
};

ValueKey MakeKey(std::string text) {
  const std::uint64_t hash = std::hash<std::string>{}(text);
  text.resize(CutKeyText(text).size());
  return {static_cast<std::uint32_t>(hash ^ (hash >> 32)), std::move(text)};
}

}  // namespace

std::string ValueNormalForm(const AttributeValue& value) {
  return std::visit(NormalForm{}, value.content);
}

std::string AttributeKeyStart(std::uint32_t type, std::string_view folded_tag) {
  std::string text = BigEndian(type);
  text += folded_tag;
  text += '\0';
  return text;
}

std::string_view CutKeyText(std::string_view text) {
  return text.substr(0, kLongestKeyText);
}

ValueKey AttributeKey(std::uint32_t type, std::string_view folded_tag, const AttributeValue& value) {
  return MakeKey(AttributeKeyStart(type, folded_tag) + ValueNormalForm(value));
}

std::vector<ValueKey> AttributeKeys(std::uint32_t type, const AttributeList& attributes) {
  std::vector<ValueKey> keys;
  for (const Attribute& attribute : attributes.items()) {
    const std::string start = AttributeKeyStart(type, Fold(attribute.tag));
    if (attribute.IsKeyword()) {
      keys.push_back(MakeKey(start + std::string(kKeyword)));
    }
    for (const AttributeValue& value : attribute.values) {
      keys.push_back(MakeKey(start + ValueNormalForm(value)));
    }
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace slp
