#include "slpd/registry/type_index.h"

#include <algorithm>

#include "slpd/registry/heap_block.h"
#include "text/fold.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// The same for all orders and spellings of the same scopes.
std::string GroupKey(std::string_view language, const std::vector<std::string>& scopes) {
  std::vector<std::string> folded;
  folded.reserve(scopes.size());
  for (const std::string& scope : scopes) {
    folded.push_back(Fold(scope));
  }
  std::sort(folded.begin(), folded.end());
  folded.erase(std::unique(folded.begin(), folded.end()), folded.end());
  return Fold(language) + ',' + JoinStringList(folded);
}

/// The text is there three times: as key, as given, and in parts.
std::size_t BytesOfType(std::size_t text_size) {
  return MapNode(sizeof(std::string) + sizeof(void*)) + HeapBlock(sizeof(IndexedType)) +
         3 * HeapBlock(text_size + 1);
}

/// The scopes are there three times, too: in the key, one by one, and as a list.
std::size_t BytesOfGroup(std::string_view language, const std::vector<std::string>& scopes) {
  std::size_t list_size = 0;
  std::size_t one_by_one = HeapBlock(scopes.size() * sizeof(std::string));
  for (const std::string& scope : scopes) {
    list_size += scope.size() + 1;
    one_by_one += HeapBlock(scope.size() + 1);
  }
  return MapNode(sizeof(std::string) + sizeof(ServiceGroup)) + one_by_one + HeapBlock(language.size() + 1) +
         HeapBlock(list_size) + HeapBlock(language.size() + 1 + list_size);
}

}  // namespace

std::size_t TypeIndex::BytesOf(std::size_t type_size, std::string_view language,
                               const std::vector<std::string>& scopes) {
  return BytesOfType(type_size) + BytesOfGroup(language, scopes);
}

ServiceGroup& TypeIndex::FindOrAdd(const ServiceType& type, std::string_view language,
                                   const std::vector<std::string>& scopes) {
  std::string text = type.ToString();
  std::unique_ptr<IndexedType>& indexed = types_[Fold(text)];
  if (indexed == nullptr) {
    bytes_ += BytesOfType(text.size());
    indexed = std::make_unique<IndexedType>(IndexedType{type, std::move(text), next_serial_++, {}});
    groups_.Add(type);
  }
  const auto [place, added] = indexed->groups.try_emplace(GroupKey(language, scopes));
  if (added) {
    bytes_ += BytesOfGroup(language, scopes);
    place->second = ServiceGroup{indexed.get(), std::string(language), scopes, JoinStringList(scopes), {}};
  }
  return place->second;
}

void TypeIndex::Remove(ServiceGroup& group) {
  IndexedType& type = *group.type;
  bytes_ -= BytesOfGroup(group.language, group.scopes);
  type.groups.erase(GroupKey(group.language, group.scopes));
  if (type.groups.empty()) {
    bytes_ -= BytesOfType(type.text.size());
    groups_.Remove(type.type);
    types_.erase(Fold(type.text));
  }
}

std::vector<const IndexedType*> TypeIndex::Matching(const ServiceType& requested) const {
  std::vector<const IndexedType*> matching;
  const std::string folded = Fold(requested.ToString());
  if (const auto exact = types_.find(folded); exact != types_.end()) {
    matching.push_back(exact->second.get());
  }
  if (requested.has_concrete) {
    return matching;
  }
  // The concrete types of an abstract one stand side by side: they are its text, a colon and more.
  const std::string prefix = folded + ':';
  for (auto type = types_.lower_bound(prefix); type != types_.end() && type->first.starts_with(prefix);
       ++type) {
    if (TypeMatches(requested, type->second->type)) {
      matching.push_back(type->second.get());
    }
  }
  return matching;
}

}  // namespace slp
