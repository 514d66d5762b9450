// What of the registry comes from the registration file.
#include <string_view>
#include <unordered_map>

#include "slpd/registry/registration_check.h"
#include "slpd/registry/registry.h"
#include "slpd/registry/registry_store.h"

namespace slp {

void Registry::DropFileRegistrations() {
  store_->covered.clear();
  const ServiceStore& services = store_->services;
  for (EntryId id = 0; id != services.end(); ++id) {
    if (services[id].group != nullptr && services[id].source == RegistrationSource::kFile) {
      store_->Drop(RegistrationEvent::kFileReplaced, id);
    }
  }
}

// 1. What is there of the file goes.
// 2. Each entry counts as if it shared nothing with what is stored, as it does when it is registered. One
// that a program's covers takes no room.
// 3. The languages in which programs have registered its URL count with those of the file.
const FileRegistration* Registry::FindWithoutRoom(const std::vector<FileRegistration>& entries) const {
  const ServiceStore& services = store_->services;
  std::size_t count = services.size();
  std::size_t bytes = services.bytes();
  for (EntryId id = 0; id != services.end(); ++id) {
    if (services[id].group != nullptr && services[id].source == RegistrationSource::kFile) {
      count -= 1;
      bytes -= services.BytesOf(id);
    }
  }
  std::unordered_map<std::string_view, std::size_t> languages;
  for (const FileRegistration& entry : entries) {
    const Registration& registration = entry.registration;
    const EntryId stored = services.FindVariant(registration.url, registration.language);
    if (stored != kNoEntry && services[stored].source != RegistrationSource::kFile) {
      continue;
    }
    const auto [of_url, first] = languages.try_emplace(registration.url, 0);
    for (EntryId id = first ? services.FindUrl(registration.url) : kNoEntry; id != kNoEntry;
         id = services[id].next_variant) {
      of_url->second += services[id].source == RegistrationSource::kFile ? 0 : 1;
    }
    const Result<CheckedRegistration> checked = CheckRegistration(registration);
    count += 1;
    bytes += checked ? ServiceStore::BytesOf(registration, checked->attributes) : 0;
    of_url->second += 1;
    const Capacity& capacity = store_->capacity;
    if (!checked || count > capacity.registrations || bytes > capacity.bytes ||
        of_url->second > capacity.languages_per_url) {
      return &entry;
    }
  }
  return nullptr;
}

}  // namespace slp
