#include "slpd/type_index.h"

#include <algorithm>

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

}  // namespace

ServiceGroup& TypeIndex::FindOrAdd(const ServiceType& type, std::string_view language,
                                   const std::vector<std::string>& scopes) {
  std::string text = type.ToString();
  std::unique_ptr<IndexedType>& indexed = types_[Fold(text)];
  if (indexed == nullptr) {
    indexed = std::make_unique<IndexedType>(IndexedType{type, std::move(text), next_serial_++, {}});
  }
  const auto [place, added] = indexed->groups.try_emplace(GroupKey(language, scopes));
  if (added) {
    place->second = ServiceGroup{indexed.get(), std::string(language), scopes, JoinStringList(scopes), {}};
  }
  return place->second;
}

void TypeIndex::Remove(ServiceGroup& group) {
  IndexedType& type = *group.type;
  type.groups.erase(GroupKey(group.language, group.scopes));
  if (type.groups.empty()) {
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
