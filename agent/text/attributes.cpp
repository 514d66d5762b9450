#include "text/attributes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "text/escape.h"
#include "text/fold.h"
#include "text/scanner.h"

namespace slp {
namespace {

/// What may stand in a tag or value: anything but unescaped reserved characters.
bool IsTextCharacter(char c) {
  return c == '\\' || !IsReserved(c);
}

bool IsBlank(char c) {
  return c == ' ';
}

/// attr-val-list up to the closing bracket, which stays. An empty value is allowed only if it is the only
/// one.
Result<std::vector<AttributeValue>> TakeValues(Scanner& scanner) {
  std::vector<AttributeValue> values;
  bool has_empty = false;
  do {
    auto value = ParseAttributeValue(scanner.TakeWhile(IsTextCharacter));
    if (!value) {
      return value.error();
    }
    has_empty = has_empty || Trim(value->raw).empty();
    values.push_back(std::move(value).value());
  } while (scanner.TakeIf(','));

  // RFC 2608 section 5: stored values must be consistent, "x=4,true,sue,\ff\00\00" is disallowed.
  const std::size_t type = values.front().content.index();
  const bool consistent = std::all_of(values.begin(), values.end(), [type](const AttributeValue& value) {
    return value.content.index() == type;
  });
  if (!consistent || (has_empty && values.size() > 1)) {
    return Error::kParseError;
  }
  return values;
}

Result<Attribute> TakeAttribute(Scanner& scanner) {
  scanner.TakeWhile(IsBlank);
  const bool in_brackets = scanner.TakeIf('(');
  auto tag = ParseTag(scanner.TakeWhile(IsTextCharacter));
  if (!tag) {
    return tag.error();
  }
  Attribute attribute{std::move(tag).value(), {}};
  if (in_brackets && scanner.TakeIf('=')) {
    auto values = TakeValues(scanner);
    if (!values) {
      return values.error();
    }
    attribute.values = std::move(values).value();
  }
  if (in_brackets && !scanner.TakeIf(')')) {
    return Error::kParseError;
  }
  scanner.TakeWhile(IsBlank);
  return attribute;
}

/// One attribute of a list whose contents are not judged.
struct RawAttribute {
  std::string_view tag;
  std::string_view value;
};

/// None when a bracket is missing or too many.
std::optional<RawAttribute> TakeRawAttribute(Scanner& scanner) {
  const auto is_bracket = [](char c) { return c == '(' || c == ')'; };
  scanner.SkipSpace();
  if (!scanner.TakeIf('(')) {
    return RawAttribute{scanner.TakeUntil([&](char c) { return c == ',' || is_bracket(c); }), {}};
  }
  Scanner inside(scanner.TakeUntil(is_bracket));
  RawAttribute attribute{inside.TakeUntil([](char c) { return c == '='; }), {}};
  inside.TakeIf('=');
  attribute.value = inside.Rest();
  const bool is_closed = scanner.TakeIf(')');
  scanner.SkipSpace();
  return is_closed ? std::optional(attribute) : std::nullopt;
}

bool TagEquals(std::string_view raw, std::string_view tag) {
  const auto plain = Unescape(raw);
  return EqualFolded(plain ? std::string_view(*plain) : raw, tag);
}

}  // namespace

Result<AttributeList> AttributeList::Parse(std::string_view text) {
  AttributeList list;
  Scanner scanner(text);
  scanner.TakeWhile(IsBlank);
  if (scanner.AtEnd()) {
    return list;
  }
  do {
    auto attribute = TakeAttribute(scanner);
    if (!attribute) {
      return attribute.error();
    }
    list.items_.push_back(std::move(attribute).value());
  } while (scanner.TakeIf(','));
  list.Sort();
  return scanner.AtEnd() && !list.HasDuplicates() ? Result<AttributeList>(std::move(list))
                                                  : Error::kParseError;
}

std::optional<std::size_t> AttributeList::IndexOf(std::string_view tag) const {
  const std::string wanted = Fold(tag);
  const auto found =
      std::lower_bound(order_.begin(), order_.end(), wanted,
                       [](const Place& place, const std::string& text) { return place.tag < text; });
  return found != order_.end() && found->tag == wanted ? std::optional(found->index) : std::nullopt;
}

const Attribute* AttributeList::Find(std::string_view tag) const {
  const auto index = IndexOf(tag);
  return index ? &items_[*index] : nullptr;
}

void AttributeList::Merge(const AttributeList& update) {
  std::vector<Attribute> added;
  for (const Attribute& attribute : update.items_) {
    if (const auto present = IndexOf(attribute.tag)) {
      items_[*present] = attribute;
    } else {
      added.push_back(attribute);
    }
  }
  items_.insert(items_.end(), added.begin(), added.end());
  Sort();
}

void AttributeList::RemoveMatching(const TagPatterns& patterns, Effort& effort) {
  std::erase_if(items_, [&](const Attribute& attribute) { return patterns.Matches(attribute.tag, effort); });
  Sort();
}

AttributeList AttributeList::Select(const TagPatterns& patterns, Effort& effort) const {
  if (patterns.empty()) {
    return *this;
  }
  AttributeList selected;
  std::copy_if(items_.begin(), items_.end(), std::back_inserter(selected.items_),
               [&](const Attribute& attribute) { return patterns.Matches(attribute.tag, effort); });
  selected.Sort();
  return selected;
}

std::string AttributeList::ToString() const {
  std::string text;
  for (const Attribute& attribute : items_) {
    text += text.empty() ? "" : ",";
    if (attribute.IsKeyword()) {
      text += Escape(attribute.tag);
      continue;
    }
    text += '(' + Escape(attribute.tag);
    char separator = '=';
    for (const AttributeValue& value : attribute.values) {
      text += separator + value.raw;
      separator = ',';
    }
    text += ')';
  }
  return text;
}

void AttributeList::Sort() {
  order_.clear();
  order_.reserve(items_.size());
  for (std::size_t i = 0; i < items_.size(); ++i) {
    order_.push_back({Fold(items_[i].tag), i});
  }
  std::sort(order_.begin(), order_.end(), [](const Place& a, const Place& b) { return a.tag < b.tag; });
}

bool AttributeList::HasDuplicates() const {
  return std::adjacent_find(order_.begin(), order_.end(),
                            [](const Place& a, const Place& b) { return a.tag == b.tag; }) != order_.end();
}

Result<std::string> RawAttributeValue(std::string_view list, std::string_view tag) {
  std::optional<std::string> value;
  Scanner scanner(list);
  do {
    const auto attribute = TakeRawAttribute(scanner);
    if (!attribute) {
      return Error::kParseError;
    }
    if (!value && !Trim(attribute->tag).empty() && TagEquals(attribute->tag, tag)) {
      value = attribute->value;
    }
  } while (scanner.TakeIf(','));
  return scanner.AtEnd() && value ? Result<std::string>(std::move(*value)) : Error::kParseError;
}

}  // namespace slp
