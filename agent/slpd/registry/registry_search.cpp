// The searches of a registry.
#include <algorithm>
#include <chrono>
#include <unordered_set>
#include <utility>

#include "slpd/registry/attribute_merge.h"
#include "slpd/registry/candidates.h"
#include "slpd/registry/registry.h"
#include "slpd/registry/registry_store.h"
#include "text/fold.h"
#include "text/keyed_hash.h"
#include "text/language.h"
#include "text/string_list.h"
#include "text/tag.h"

namespace slp {
namespace {

/// The groups of one type that a search has to look into.
struct SelectedType {
  const IndexedType* type = nullptr;
  std::vector<const ServiceGroup*> groups;
  std::unordered_set<const ServiceGroup*> group_set;  ///< the same
  std::size_t entries = 0;
};

struct Selection {
  std::vector<SelectedType> types;
  bool in_scopes = false;  ///< the type is there in the scopes, whatever the language
};

/// `language`: none when any language will do.
Selection Select(const TypeIndex& index, const ServiceType& requested, const std::vector<std::string>& scopes,
                 const std::optional<std::string_view>& language) {
  Selection selection;
  for (const IndexedType* type : index.Matching(requested)) {
    SelectedType selected{type, {}, {}, 0};
    for (const auto& [key, group] : type->groups) {
      if (!ListsIntersect(group.scopes, scopes)) {
        continue;
      }
      selection.in_scopes = true;
      if (!language || LanguageServes(group.language, *language)) {
        selected.groups.push_back(&group);
        selected.group_set.insert(&group);
        selected.entries += group.entries.size();
      }
    }
    if (!selected.groups.empty()) {
      selection.types.push_back(std::move(selected));
    }
  }
  return selection;
}

/// The services of one type to compare with the predicate: those that the index names when they are fewer
/// than all.
std::vector<EntryId> Candidates(const SelectedType& selected, const PredicateNode* predicate,
                                const ServiceStore& services, Effort& effort) {
  std::vector<EntryId> candidates;
  const std::optional<CandidatePlan> plan =
      predicate == nullptr
          ? std::nullopt
          : PlanCandidates(*predicate, selected.type->serial, services.values(), selected.entries, effort);
  if (plan) {
    candidates.reserve(plan->count);
    for (const ValueIndex::ValueId value : plan->values) {
      services.values().Collect(value, candidates);
    }
    if (plan->values.size() > 1) {
      std::sort(candidates.begin(), candidates.end());
      candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    }
    return candidates;
  }
  candidates.reserve(selected.entries);
  for (const ServiceGroup* group : selected.groups) {
    candidates.insert(candidates.end(), group->entries.begin(), group->entries.end());
  }
  return candidates;
}

/// The seconds left, a begun one as a whole: a service that is still shown has at least one.
std::uint16_t Remaining(const ServiceEntry& entry, Instant now) {
  if (!entry.expiry) {
    return entry.lifetime;
  }
  return static_cast<std::uint16_t>(
      std::clamp<Seconds::rep>(std::chrono::ceil<Seconds>(*entry.expiry - now).count(), 0, entry.lifetime));
}

}  // namespace

// 1. The groups of the type in the scopes; the language counts only when attributes are asked for.
// 2. Of each type the candidates that the index names, or all.
// 3. Each candidate is compared itself: two values may share a key in the index.
// 4. A URL that is there in several languages is shown once.
Error Registry::FindServices(
    const ServiceQuery& query, Instant now, Effort& effort,
    const std::function<bool(std::string_view url, std::uint16_t lifetime)>& visit) const {
  Store& store = *store_;
  const PredicateNode* predicate = query.predicate.root();
  const Selection selection =
      Select(store.services.types(), query.type, query.scopes,
             predicate == nullptr ? std::nullopt : std::optional<std::string_view>(query.language));
  if (selection.types.empty()) {
    return selection.in_scopes ? Error::kLanguageNotSupported : Error::kOk;
  }

  std::unordered_set<std::string_view, TextHash> shown_variants;
  for (const SelectedType& selected : selection.types) {
    for (const EntryId id : Candidates(selected, predicate, store.services, effort)) {
      ++store.touched;
      const ServiceEntry& entry = store.services[id];
      if (selected.group_set.count(entry.group) == 0) {
        continue;
      }
      const bool matches =
          predicate == nullptr || query.predicate.Matches(store.ParsedAttributes(id), effort);
      if (effort.exhausted()) {
        return Error::kInternalError;
      }
      if (!matches) {
        continue;
      }
      const bool has_variants = store.services.FindUrl(entry.url()) != id || entry.next_variant != kNoEntry;
      if (has_variants && !shown_variants.insert(entry.url()).second) {
        continue;
      }
      if (!visit(entry.url(), Remaining(entry, now))) {
        return Error::kOk;
      }
    }
  }
  return Error::kOk;
}

// 1. The variants of the URL in the scopes; none: no attributes.
// 2. Among them one that serves the language, the very language before another dialect of it.
Result<AttributeAnswer> Registry::FindAttributesOfUrl(std::string_view url,
                                                      const std::vector<std::string>& scopes,
                                                      std::string_view language,
                                                      const std::vector<std::string>& tag_patterns,
                                                      Effort& effort) const {
  Store& store = *store_;
  bool in_scopes = false;
  EntryId best = kNoEntry;
  for (EntryId id = store.services.FindUrl(url); id != kNoEntry; id = store.services[id].next_variant) {
    ++store.touched;
    const ServiceGroup& group = *store.services[id].group;
    if (!ListsIntersect(group.scopes, scopes)) {
      continue;
    }
    in_scopes = true;
    if (LanguageServes(group.language, language) &&
        (best == kNoEntry || EqualFolded(group.language, language))) {
      best = id;
    }
  }
  if (best == kNoEntry) {
    return in_scopes ? Result<AttributeAnswer>(Error::kLanguageNotSupported) : AttributeAnswer{};
  }
  if (tag_patterns.empty()) {
    return AttributeAnswer{std::string(store.services[best].attributes()), false};
  }
  const AttributeList selected = store.ParsedAttributes(best).Select(TagPatterns(tag_patterns), effort);
  return effort.exhausted() ? Result<AttributeAnswer>(Error::kInternalError)
                            : AttributeAnswer{selected.ToString(), false};
}

Result<AttributeAnswer> Registry::FindAttributesOfType(const ServiceType& type,
                                                       const std::vector<std::string>& scopes,
                                                       std::string_view language,
                                                       const std::vector<std::string>& tag_patterns,
                                                       std::size_t limit, Effort& effort) const {
  Store& store = *store_;
  const Selection selection = Select(store.services.types(), type, scopes, language);
  if (selection.types.empty() && selection.in_scopes) {
    return Error::kLanguageNotSupported;
  }
  const TagPatterns patterns(tag_patterns);
  AttributeMerge merge(limit);
  for (const SelectedType& selected : selection.types) {
    for (const EntryId id : Candidates(selected, nullptr, store.services, effort)) {
      if (merge.full()) {
        return AttributeAnswer{merge.ToString(), true};
      }
      ++store.touched;
      merge.Add(store.ParsedAttributes(id).Select(patterns, effort));
      if (effort.exhausted()) {
        return Error::kInternalError;
      }
    }
  }
  return AttributeAnswer{merge.ToString(), merge.full()};
}

std::vector<std::string> Registry::FindTypes(const std::vector<std::string>& scopes,
                                             const std::optional<std::string>& naming_authority) const {
  std::vector<std::string> found;
  for (const auto& [folded, type] : store_->services.types().types()) {
    if (naming_authority && !EqualFolded(type->type.naming_authority, *naming_authority)) {
      continue;
    }
    const bool in_scopes = std::any_of(type->groups.begin(), type->groups.end(), [&](const auto& group) {
      return ListsIntersect(group.second.scopes, scopes);
    });
    if (in_scopes) {
      found.push_back(type->text);
    }
  }
  return found;
}

}  // namespace slp
