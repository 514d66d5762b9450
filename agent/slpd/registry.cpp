#include "slpd/registry.h"

#include <algorithm>
#include <utility>

#include "slpd/registration_check.h"
#include "slpd/registry_store.h"
#include "text/fold.h"
#include "text/language.h"
#include "text/string_list.h"

namespace slp {
namespace {

bool SameScopes(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return ListContainsAll(a, b) && ListContainsAll(b, a);
}

bool SameType(const ServiceType& a, const ServiceType& b) {
  return EqualFolded(a.ToString(), b.ToString());
}

}  // namespace

Registry::Registry(EventSink& events) : Registry(events, Capacity{}) {}

Registry::Registry(EventSink& events, Capacity capacity)
    : store_(std::make_unique<Store>(events, capacity)) {}

Registry::~Registry() = default;

// 1. Refuse what is malformed.
// 2. Message and file meet: the file's registration waits until the message's has left.
// 3. The same texts again, as a renewal has them: only the lifetime starts anew.
// 4. Otherwise the earlier registration of the URL in this language makes room for the new one.
Error Registry::Register(const Registration& registration, Instant now) {
  Store& store = *store_;
  const Result<CheckedRegistration> checked = CheckRegistration(registration);
  if (!checked) {
    return checked.error();
  }

  const EntryId earlier = store.services.FindVariant(registration.url, registration.language);
  const bool from_message = registration.source != RegistrationSource::kFile;
  if (earlier != kNoEntry && !from_message && store.services[earlier].source != RegistrationSource::kFile) {
    store.Cover(registration, now);
    return Error::kOk;
  }
  if (earlier != kNoEntry) {
    const ServiceEntry& entry = store.services[earlier];
    if (entry.attributes() == registration.attributes && SameType(entry.group->type->type, checked->type) &&
        SameScopes(entry.group->scopes, checked->scopes)) {
      if (from_message) {
        store.CoverIfFromFile(earlier);
      }
      store.services.Renew(earlier, registration, now);
      store.Tell(RegistrationEvent::kRenewed, earlier);
      return Error::kOk;
    }
  }

  if (!store.HasRoom(registration, checked->attributes, earlier)) {
    return Error::kInternalError;
  }
  if (earlier != kNoEntry) {
    if (from_message) {
      store.CoverIfFromFile(earlier);
    }
    store.services.Erase(earlier);
  }
  const EntryId id =
      store.services.Insert(registration, checked->type, checked->scopes, checked->attributes, now);
  store.Tell(earlier == kNoEntry ? RegistrationEvent::kRegistered : RegistrationEvent::kRenewed, id);
  return Error::kOk;
}

// 1. Refuse what is malformed.
// 2. There must be an earlier registration in this language, of the same type and in the same scopes.
// 3. The new attributes replace those of the same tags; all others stay. The file's registration as it was is
// kept for later.
Error Registry::Update(const Registration& registration, Instant now) {
  Store& store = *store_;
  const Result<CheckedRegistration> checked = CheckRegistration(registration);
  if (!checked) {
    return checked.error();
  }

  const EntryId earlier = store.services.FindVariant(registration.url, registration.language);
  if (earlier == kNoEntry || !SameType(store.services[earlier].group->type->type, checked->type)) {
    return Error::kInvalidUpdate;
  }
  if (!SameScopes(store.services[earlier].group->scopes, checked->scopes)) {
    return Error::kScopeNotSupported;
  }

  AttributeList merged = store.ParsedAttributes(earlier);
  merged.Merge(checked->attributes);
  Registration updated = registration;
  updated.attributes = merged.ToString();
  if (updated.process_id == 0) {
    updated.process_id = store.services[earlier].process_id;
  }
  if (updated.attributes.size() > kMaximumTextLength) {
    return Error::kInvalidRegistration;
  }
  if (!store.HasRoom(updated, merged, earlier)) {
    return Error::kInternalError;
  }
  store.CoverIfFromFile(earlier);
  store.services.ReplaceAttributes(earlier, merged);
  store.services.Renew(earlier, updated, now);
  store.Tell(RegistrationEvent::kUpdated, earlier);
  return Error::kOk;
}

// 1. The URL must be known and every variant's scopes be named; one that is not keeps them all.
// 2. Without tags the variants go; with tags the attributes that match go from each variant.
Error Registry::Deregister(std::string_view url, const std::vector<std::string>& scopes,
                           const std::vector<std::string>& tag_patterns) {
  Store& store = *store_;
  std::vector<EntryId> variants;
  for (EntryId id = store.services.FindUrl(url); id != kNoEntry; id = store.services[id].next_variant) {
    if (!ListContainsAll(scopes, store.services[id].group->scopes)) {
      return Error::kScopeNotSupported;
    }
    variants.push_back(id);
  }
  if (variants.empty()) {
    return Error::kInvalidRegistration;
  }
  for (const EntryId id : variants) {
    if (tag_patterns.empty()) {
      store.Drop(RegistrationEvent::kDeregistered, id);
    } else {
      store.RemoveAttributes(id, tag_patterns);
    }
  }
  return Error::kOk;
}

void Registry::Expire(Instant now) {
  const auto& by_expiry = store_->services.by_expiry();
  while (!by_expiry.empty() && by_expiry.begin()->first <= now) {
    store_->Drop(RegistrationEvent::kExpired, by_expiry.begin()->second.back());
  }
}

std::optional<Instant> Registry::NextExpiry() const {
  const auto& by_expiry = store_->services.by_expiry();
  return by_expiry.empty() ? std::nullopt : std::optional(by_expiry.begin()->first);
}

std::vector<std::uint32_t> Registry::WatchedProcesses() const {
  std::vector<std::uint32_t> processes;
  for (const auto& [process_id, entries] : store_->services.by_process()) {
    processes.push_back(process_id);
  }
  return processes;
}

void Registry::DropProcess(std::uint32_t process_id) {
  const auto& by_process = store_->services.by_process();
  for (auto bound = by_process.find(process_id); bound != by_process.end();
       bound = by_process.find(process_id)) {
    store_->Drop(RegistrationEvent::kProcessEnded, bound->second.back());
  }
}

void Registry::DropFileRegistrations() {
  store_->covered.clear();
  const ServiceStore& services = store_->services;
  for (EntryId id = 0; id != services.end(); ++id) {
    if (services[id].group != nullptr && services[id].source == RegistrationSource::kFile) {
      store_->Drop(RegistrationEvent::kFileReplaced, id);
    }
  }
}

std::optional<RegistrationView> Registry::Find(std::string_view url, std::string_view language) const {
  const EntryId id = store_->services.FindVariant(url, language);
  return id == kNoEntry ? std::nullopt : std::optional(store_->services[id].View());
}

bool Registry::Knows(std::string_view url) const {
  return store_->services.FindUrl(url) != kNoEntry;
}

bool Registry::OthersHave(std::string_view url, std::string_view host) const {
  const ServiceStore& services = store_->services;
  for (EntryId id = services.FindUrl(url); id != kNoEntry; id = services[id].next_variant) {
    if (services[id].View().host != host) {
      return true;
    }
  }
  return false;
}

void Registry::ForEach(const std::function<void(const RegistrationView&)>& visit) const {
  const ServiceStore& services = store_->services;
  for (EntryId id = 0; id != services.end(); ++id) {
    if (services[id].group != nullptr) {
      visit(services[id].View());
    }
  }
}

std::size_t Registry::size() const {
  return store_->services.size();
}

std::size_t Registry::CountOf(std::string_view host) const {
  return store_->services.CountOf(host);
}

std::uint64_t Registry::touched() const {
  return store_->touched;
}

}  // namespace slp
