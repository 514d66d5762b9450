#include "slpd/service_store.h"

#include <chrono>
#include <utility>

#include "slpd/attribute_key.h"
#include "text/fold.h"

namespace slp {

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
  text_bytes_ += entry.text_bytes();
  entry.place_in_group = static_cast<std::uint32_t>(group.entries.size());
  group.entries.push_back(id);
  entry.values = values_.Add(id, AttributeKeys(group.type->serial, attributes));
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
  text_bytes_ = text_bytes_ - entry.text.size() + text.size();
  text.shrink_to_fit();
  entry.text = std::move(text);
}

void ServiceStore::Erase(EntryId id) {
  ServiceEntry& entry = entries_[id];
  text_bytes_ -= entry.text_bytes();
  LeaveLists(id);
  values_.Remove(entry.values);
  ServiceGroup& group = *entry.group;
  RemoveAt(group.entries, &ServiceEntry::place_in_group, id);
  if (group.entries.empty()) {
    types_.Remove(group);
  }

  const EntryId first = FindUrl(entry.url());
  if (first == id) {
    by_url_.erase(id);
    if (entry.next_variant != kNoEntry) {
      by_url_.insert(entry.next_variant);
    }
  } else {
    EntryId before = first;
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

std::size_t ServiceStore::CountOf(std::string_view host) const {
  const auto found = hosts_.find(host);
  return found == hosts_.end() ? 0 : found->second;
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
  entry.host = registration.host.empty() ? nullptr : &*hosts_.try_emplace(registration.host, 0).first;
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
    ++entry.host->second;
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
  if (entry.host != nullptr && --entry.host->second == 0) {
    hosts_.erase(hosts_.find(entry.host->first));
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
