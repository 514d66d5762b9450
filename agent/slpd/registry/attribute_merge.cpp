#include "slpd/registry/attribute_merge.h"

#include <utility>

#include "slpd/registry/attribute_key.h"
#include "text/escape.h"
#include "text/fold.h"
#include "text/string_list.h"

namespace slp {

void AttributeMerge::Add(const AttributeList& attributes) {
  for (const Attribute& attribute : attributes.items()) {
    Merged* merged = full_ ? nullptr : FindOrAdd(attribute);
    if (merged == nullptr) {
      return;
    }
    for (const AttributeValue& value : attribute.values) {
      AddValue(*merged, value);
    }
  }
}

AttributeMerge::Merged* AttributeMerge::FindOrAdd(const Attribute& attribute) {
  std::string folded = Fold(attribute.tag);
  if (const auto place = places_.find(folded); place != places_.end()) {
    return &merged_[place->second];
  }
  std::string tag = Escape(attribute.tag);
  // "tag," for a keyword; for one with values at least its first one is there too: "(tag=value),".
  const std::size_t first_value = attribute.values.empty() ? 0 : 3 + attribute.values.front().raw.size();
  if (full_ || size_ + tag.size() + 1 + first_value > limit_ + 1) {
    full_ = true;
    return nullptr;
  }
  size_ += tag.size() + 1;
  places_.emplace(std::move(folded), merged_.size());
  merged_.push_back(Merged{std::move(tag), {}, {}});
  return &merged_.back();
}

void AttributeMerge::AddValue(Merged& merged, const AttributeValue& value) {
  std::string normal_form = ValueNormalForm(value);
  if (full_ || merged.normal_forms.count(normal_form) != 0) {
    return;
  }
  // Beside other values the empty one, which only a list of its own can say, is left out.
  const bool after_empty = merged.raw_values.size() == 1 && Trim(merged.raw_values.front()).empty();
  if (Trim(value.raw).empty() && !merged.raw_values.empty()) {
    return;
  }
  const std::size_t brackets_or_comma = after_empty ? 0 : merged.raw_values.empty() ? 3 : 1;
  if (!Take(brackets_or_comma + value.raw.size())) {
    return;
  }
  if (after_empty) {
    merged.raw_values.clear();
  }
  merged.normal_forms.insert(std::move(normal_form));
  merged.raw_values.push_back(value.raw);
}

bool AttributeMerge::Take(std::size_t bytes) {
  // The last attribute has no comma behind it.
  if (size_ + bytes > limit_ + 1) {
    full_ = true;
    return false;
  }
  size_ += bytes;
  return true;
}

std::string AttributeMerge::ToString() const {
  std::vector<std::string> texts;
  texts.reserve(merged_.size());
  for (const Merged& merged : merged_) {
    texts.push_back(merged.raw_values.empty()
                        ? merged.tag
                        : '(' + merged.tag + '=' + JoinStringList(merged.raw_values) + ')');
  }
  return JoinStringList(texts);
}

}  // namespace slp
