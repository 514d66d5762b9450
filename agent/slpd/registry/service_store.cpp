#include "slpd/registry/service_store.h"

#include <chrono>
#include <utility>

#include "slpd/registry/attribute_key.h"
#include "slpd/registry/heap_block.h"
#include "text/fold.h"

namespace slp {
namespace {

/// A list of entries has room for one and up to one more.
constexpr std::size_t kPlaceInList = 2 * sizeof(EntryId);

/// The entry, its node and bucket in the set of URLs, and its places among those of its group and its end.
constexpr std::size_t kEntry =
    sizeof(ServiceEntry) + HeapBlock(3 * sizeof(void*)) + 2 * sizeof(void*) + 2 * kPlaceInList;

/// A list of those that end at the same time, or with the same process.
constexpr std::size_t kList =
    MapNode(sizeof(Instant) + sizeof(std::vector<EntryId>)) + HeapBlock(sizeof(EntryId));

constexpr std::size_t kLongestAddress = 45;
constexpr std::size_t kHost = MapNode(sizeof(HostAccount)) + HeapBlock(kLongestAddress + 1);

std::size_t BytesOfText(std::size_t size) {
  return HeapBlock(size + 1);
}

/// As if nothing were shared. The list of what ends at that time counts, too.
std::size_t BytesAlone(std::size_t text_size, std::size_t type_size, std::string_view language,
                       const std::vector<std::string>& scopes, const AttributeList& attributes) {
  return kEntry + BytesOfText(text_size) + kList + TypeIndex::BytesOf(type_size, language, scopes) +
         BytesOfAttributeKeys(attributes);
}

}  // namespace

RegistrationView ServiceEntry::View() const {
  return {.url = url(),
          .service_type = group->type->text,
          .language = group->language,
          .scopes = group->scopes_text,
          .attributes = attributes(),
          .lifetime = lifetime,
          .expiry = expiry,
          .process_id = process_id,
          .source = source,
          .host = host == nullptr ? std::string_view() : std::string_view(host->first)};
}

ServiceStore::ServiceStore() : by_url_(0, UrlHash{&entries_}, UrlEqual{&entries_}) {}

EntryId ServiceStore::Insert(const Registration& registration, const ServiceType& type,
                             const std::vector<std::string>& scopes, const AttributeList& attributes,
                             Instant now) {
  EntryId id = static_cast<EntryId>(entries_.size());
  if (free_.empty()) {
    entries_.emplace_back();
  } else {
    id = free_.back();
    free_.pop_back();
  }
  ServiceEntry& entry = entries_[id];
  entry.text.reserve(registration.url.size() + registration.attributes.size());
  entry.text = registration.url;
  entry.text += registration.attributes;
  entry.url_length = static_cast<std::uint32_t>(registration.url.size());
  ++size_;

  if (const auto [first, added] = by_url_.insert(id); !added) {
    entry.next_variant = std::exchange(entries_[*first].next_variant, id);
  }
  ServiceGroup& group = types_.FindOrAdd(type, registration.language, scopes);
  entry.group = &group;
  text_bytes_ += BytesOfText(entry.text.size());
  entry.place_in_group = static_cast<std::uint32_t>(group.entries.size());
  group.entries.push_back(id);
  entry.values = values_.Add(id, AttributeKeys(group.type->serial, attributes));
  SetBytes(entry, attributes);
  SetLife(id, registration, now);
  EnterLists(id);
  return id;
}

void ServiceStore::Renew(EntryId id, const Registration& registration, Instant now) {
  LeaveLists(id);
  SetLife(id, registration, now);
  EnterLists(id);
}

void ServiceStore::ReplaceAttributes(EntryId id, const AttributeList& attributes) {
  ServiceEntry& entry = entries_[id];
  values_.Remove(entry.values);
  entry.values = values_.Add(id, AttributeKeys(entry.group->type->serial, attributes));
  // A new text rather than a shortened one, so that it takes only the memory that it needs.
  std::string text(entry.url());
  text += attributes.ToString();
  text_bytes_ = text_bytes_ - BytesOfText(entry.text.size()) + BytesOfText(text.size());
  text.shrink_to_fit();
  entry.text = std::move(text);
  const std::size_t before = entry.bytes;
  SetBytes(entry, attributes);
  if (entry.host != nullptr) {
    entry.host->second.bytes = entry.host->second.bytes - before + entry.bytes;
  }
}

void ServiceStore::Erase(EntryId id) {
  ServiceEntry& entry = entries_[id];
  text_bytes_ -= BytesOfText(entry.text.size());
  LeaveLists(id);
  values_.Remove(entry.values);
  ServiceGroup& group = *entry.group;
  RemoveAt(group.entries, &ServiceEntry::place_in_group, id);
  if (group.entries.empty()) {
    types_.Remove(group);
  }

  const auto first = by_url_.find(entry.url());
  if (*first == id) {
    by_url_.erase(first);
    if (entry.next_variant != kNoEntry) {
      by_url_.insert(entry.next_variant);
    }
  } else {
    EntryId before = *first;
    while (entries_[before].next_variant != id) {
      before = entries_[before].next_variant;
    }
    entries_[before].next_variant = entry.next_variant;
  }

  --size_;
  entry = ServiceEntry{};
  free_.push_back(id);
}

EntryId ServiceStore::FindUrl(std::string_view url) const {
  const auto found = by_url_.find(url);
  return found == by_url_.end() ? kNoEntry : *found;
}

EntryId ServiceStore::FindVariant(std::string_view url, std::string_view language) const {
  EntryId id = FindUrl(url);
  while (id != kNoEntry && !EqualFolded(entries_[id].group->language, language)) {
    id = entries_[id].next_variant;
  }
  return id;
}

std::size_t ServiceStore::bytes() const {
  return text_bytes_ + size_ * kEntry + (by_expiry_.size() + by_process_.size()) * kList +
         hosts_.size() * kHost + types_.bytes() + values_.bytes();
}

std::size_t ServiceStore::BytesOf(EntryId id) const {
  const ServiceEntry& entry = entries_[id];
  return kEntry + BytesOfText(entry.text.size()) + values_.BytesOf(entry.values);
}

std::size_t ServiceStore::BytesOf(const Registration& registration, const AttributeList& attributes) {
  return BytesAlone(registration.url.size() + registration.attributes.size(),
                    registration.service_type.size(), registration.language, registration.scopes, attributes);
}

HostUse ServiceStore::UseOf(std::string_view host) const {
  const auto found = hosts_.find(host);
  return found == hosts_.end() ? HostUse() : found->second;
}

void ServiceStore::SetBytes(ServiceEntry& entry, const AttributeList& attributes) {
  entry.bytes =
      static_cast<std::uint32_t>(BytesAlone(entry.text.size(), entry.group->type->text.size(),
                                            entry.group->language, entry.group->scopes, attributes));
}

void ServiceStore::SetLife(EntryId id, const Registration& registration, Instant now) {
  ServiceEntry& entry = entries_[id];
  entry.lifetime = registration.lifetime;
  entry.expiry.reset();
  if (!registration.permanent) {
    entry.expiry = std::chrono::ceil<ExpiryStep>(now + Seconds(registration.lifetime));
  }
  entry.process_id = registration.process_id;
  entry.source = registration.source;
  entry.host = registration.host.empty() ? nullptr : &*hosts_.try_emplace(registration.host).first;
}

void ServiceStore::EnterLists(EntryId id) {
  ServiceEntry& entry = entries_[id];
  if (entry.expiry) {
    std::vector<EntryId>& list = by_expiry_[*entry.expiry];
    entry.place_in_expiry = static_cast<std::uint32_t>(list.size());
    list.push_back(id);
  }
  if (entry.process_id != 0) {
    std::vector<EntryId>& list = by_process_[entry.process_id];
    entry.place_in_process = static_cast<std::uint32_t>(list.size());
    list.push_back(id);
  }
  if (entry.host != nullptr) {
    ++entry.host->second.registrations;
    entry.host->second.bytes += entry.bytes;
  }
}

void ServiceStore::LeaveLists(EntryId id) {
  ServiceEntry& entry = entries_[id];
  if (entry.expiry) {
    const auto list = by_expiry_.find(*entry.expiry);
    RemoveAt(list->second, &ServiceEntry::place_in_expiry, id);
    if (list->second.empty()) {
      by_expiry_.erase(list);
    }
  }
  if (entry.process_id != 0) {
    const auto list = by_process_.find(entry.process_id);
    RemoveAt(list->second, &ServiceEntry::place_in_process, id);
    if (list->second.empty()) {
      by_process_.erase(list);
    }
  }
  if (entry.host != nullptr) {
    entry.host->second.bytes -= entry.bytes;
    if (--entry.host->second.registrations == 0) {
      hosts_.erase(hosts_.find(entry.host->first));
    }
  }
  entry.host = nullptr;
}

void ServiceStore::RemoveAt(std::vector<EntryId>& list, std::uint32_t ServiceEntry::*place, EntryId id) {
  const EntryId last = list.back();
  list[entries_[id].*place] = last;
  entries_[last].*place = entries_[id].*place;
  list.pop_back();
}

}  // namespace slp
