#include "slpd/attribute_key.h"

#include <algorithm>
#include <functional>
#include <variant>

#include "text/fold.h"

namespace slp {
namespace {

struct NormalForm {
  std::string operator()(const std::string& text) const { return 's' + Fold(text); }
  std::string operator()(std::int32_t number) const { return 'i' + std::to_string(number); }
  std::string operator()(bool truth) const { return truth ? "b1" : "b0"; }
  std::string operator()(const Opaque& bytes) const { return 'o' + std::string(bytes.begin(), bytes.end()); }
};

}  // namespace

std::string ValueNormalForm(const AttributeValue& value) {
  return std::visit(NormalForm{}, value.content);
}

std::uint32_t AttributeKey(std::uint32_t type, std::string_view folded_tag, const AttributeValue& value) {
  std::string text = std::to_string(type);
  text += '=';
  text += folded_tag;
  text += '=';
  text += ValueNormalForm(value);
  const std::uint64_t hash = std::hash<std::string>{}(text);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

std::vector<std::uint32_t> AttributeKeys(std::uint32_t type, const AttributeList& attributes) {
  std::vector<std::uint32_t> keys;
  for (const Attribute& attribute : attributes.items()) {
    const std::string tag = Fold(attribute.tag);
    for (const AttributeValue& value : attribute.values) {
      keys.push_back(AttributeKey(type, tag, value));
    }
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace slp
