#include "slpd/registry/registry.h"

#include <algorithm>
#include <utility>

#include "slpd/registry/registration_check.h"
#include "slpd/registry/registry_store.h"
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
      if (!store.HasShare(registration, entry.bytes, earlier)) {
        return Error::kDaBusyNow;
      }
      if (from_message) {
        store.CoverIfFromFile(earlier);
      }
      store.services.Renew(earlier, registration, now);
      store.Tell(RegistrationEvent::kRenewed, earlier);
      return Error::kOk;
    }
  }

  if (const Error error = store.CheckRoom(registration, checked->attributes, earlier); error != Error::kOk) {
    return error;
  }
  bool moved = false;
  if (earlier != kNoEntry) {
    if (from_message) {
      store.CoverIfFromFile(earlier);
    }
    // Who serves only the scopes that it leaves has to hear of that.
    moved = !SameScopes(store.services[earlier].group->scopes, checked->scopes);
    if (moved) {
      store.Tell(RegistrationEvent::kDeregistered, earlier);
    }
    store.services.Erase(earlier);
  }
  const EntryId id =
      store.services.Insert(registration, checked->type, checked->scopes, checked->attributes, now);
  store.Tell(earlier == kNoEntry || moved ? RegistrationEvent::kRegistered : RegistrationEvent::kRenewed, id);
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
  if (const Error error = store.CheckRoom(updated, merged, earlier); error != Error::kOk) {
    return error;
  }
  store.CoverIfFromFile(earlier);
  store.services.ReplaceAttributes(earlier, merged);
  store.services.Renew(earlier, updated, now);
  store.Tell(RegistrationEvent::kUpdated, earlier);
  return Error::kOk;
}

// 1. The URL must be known and every variant's scopes be named; one that is not keeps them all.
// 2. Without tags the variants go.
// 3. With tags the attributes that match go from each variant. What stays is known for all of them before the
// first one changes; it is kept as text, which takes less room.
Error Registry::Deregister(std::string_view url, const std::vector<std::string>& scopes,
                           const std::vector<std::string>& tag_patterns, Effort& effort) {
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
  if (tag_patterns.empty()) {
    for (const EntryId id : variants) {
      store.Drop(RegistrationEvent::kDeregistered, id);
    }
    return Error::kOk;
  }

  const TagPatterns patterns(tag_patterns);
  std::vector<std::string> kept;
  for (const EntryId id : variants) {
    AttributeList attributes = store.ParsedAttributes(id);
    attributes.RemoveMatching(patterns, effort);
    if (effort.exhausted()) {
      return Error::kInternalError;
    }
    kept.push_back(attributes.ToString());
  }
  for (std::size_t i = 0; i < variants.size(); ++i) {
    store.KeepAttributes(variants[i], AttributeList::Parse(kept[i]).value());
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

std::optional<RegistrationView> Registry::Find(std::string_view url, std::string_view language) const {
  const EntryId id = store_->services.FindVariant(url, language);
  return id == kNoEntry ? std::nullopt : std::optional(store_->services[id].View());
}

void Registry::DropHosts() {
  const ServiceStore& services = store_->services;
  for (EntryId id = 0; id != services.end(); ++id) {
    if (services[id].group != nullptr && services[id].source == RegistrationSource::kAgent) {
      store_->Drop(RegistrationEvent::kDeregistered, id);
    }
  }
}

void Registry::ForEachOf(std::string_view url,
                         const std::function<void(const RegistrationView&)>& visit) const {
  const ServiceStore& services = store_->services;
  for (EntryId id = services.FindUrl(url); id != kNoEntry; id = services[id].next_variant) {
    visit(services[id].View());
  }
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

std::size_t Registry::bytes() const {
  return store_->services.bytes();
}

const TypeGroups& Registry::type_groups() const {
  return store_->services.types().groups();
}

HostUse Registry::UseOf(std::string_view host) const {
  return store_->services.UseOf(host);
}

std::uint64_t Registry::touched() const {
  return store_->touched;
}

}  // namespace slp
