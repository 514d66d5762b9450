#include "slpd/registry/attribute_key.h"

#include <algorithm>
#include <variant>

#include "text/fold.h"
#include "text/keyed_hash.h"

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

/// The same form's size, or more: folding may make a text shorter.
struct NormalFormSize {
  std::size_t operator()(const std::string& text) const { return 1 + text.size(); }
  std::size_t operator()(std::int32_t) const { return 1 + sizeof(std::int32_t); }
  std::size_t operator()(bool) const { return 2; }
  std::size_t operator()(const Opaque& bytes) const { return 1 + bytes.size(); }
};

/// The cut text is a new one: a key that is kept must not hold the memory of a long tag.
ValueKey MakeKey(std::string_view text) {
  const std::uint64_t hash = ProcessHash(text);
  return {static_cast<std::uint32_t>(hash ^ (hash >> 32)), std::string(CutKeyText(text))};
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

std::size_t BytesOfAttributeKeys(const AttributeList& attributes) {
  const auto bytes = [](std::size_t text_size) {
    return ValueIndex::BytesOfKey(std::min(text_size, kLongestKeyText));
  };
  std::size_t sum = 0;
  for (const Attribute& attribute : attributes.items()) {
    const std::size_t start = sizeof(std::uint32_t) + attribute.tag.size() + 1;
    sum += attribute.IsKeyword() ? bytes(start + kKeyword.size()) : 0;
    for (const AttributeValue& value : attribute.values) {
      sum += bytes(start + std::visit(NormalFormSize{}, value.content));
    }
  }
  return sum;
}

}  // namespace slp
