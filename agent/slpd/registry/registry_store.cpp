#include "slpd/registry/registry_store.h"

#include <utility>

#include "slpd/others_part.h"
#include "slpd/registry/registration_check.h"
#include "text/fold.h"

namespace slp {
namespace {

VariantKey KeyOf(std::string_view url, std::string_view language) {
  return {std::string(url), Fold(language)};
}

}  // namespace

void Registry::Store::Tell(RegistrationEvent event, EntryId id) const {
  events.OnRegistration(event, services[id].View());
}

void Registry::Store::Cover(const Registration& registration, Instant since) {
  covered.insert_or_assign(KeyOf(registration.url, registration.language), Covered{registration, since});
}

void Registry::Store::CoverIfFromFile(EntryId id) {
  const ServiceEntry& entry = services[id];
  if (entry.source != RegistrationSource::kFile) {
    return;
  }
  const Registration registration{.url = std::string(entry.url()),
                                  .service_type = entry.group->type->text,
                                  .language = entry.group->language,
                                  .scopes = entry.group->scopes,
                                  .attributes = std::string(entry.attributes()),
                                  .lifetime = entry.lifetime,
                                  .permanent = !entry.expiry.has_value(),
                                  .process_id = 0,
                                  .source = RegistrationSource::kFile};
  Cover(registration, entry.expiry ? *entry.expiry - Seconds(entry.lifetime) : Instant(0));
}

// 1. Tell of it and erase it.
// 2. What it covered is registered as it was; it has been checked when it came. One whose lifetime has ended
// meanwhile leaves with the next expiry.
void Registry::Store::Drop(RegistrationEvent event, EntryId id) {
  Tell(event, id);
  auto waiting = covered.extract(KeyOf(services[id].url(), services[id].group->language));
  services.Erase(id);
  if (!waiting) {
    return;
  }
  const Registration& registration = waiting.mapped().registration;
  if (const Result<CheckedRegistration> checked = CheckRegistration(registration)) {
    Tell(RegistrationEvent::kRegistered, services.Insert(registration, checked->type, checked->scopes,
                                                         checked->attributes, waiting.mapped().since));
  }
}

Error Registry::Store::CheckRoom(const Registration& registration, const AttributeList& attributes,
                                 EntryId earlier) const {
  const std::size_t bytes = ServiceStore::BytesOf(registration, attributes);
  std::size_t other_services = services.size();
  std::size_t other_bytes = services.bytes();
  std::size_t other_languages = 0;
  if (earlier != kNoEntry) {
    other_services -= 1;
    other_bytes -= services.BytesOf(earlier);
  } else {
    for (EntryId id = services.FindUrl(registration.url); id != kNoEntry; id = services[id].next_variant) {
      ++other_languages;
    }
  }
  const bool own_host = registration.host.empty();
  const std::size_t most_services = own_host ? capacity.registrations : OthersPart(capacity.registrations);
  const std::size_t most_bytes = own_host ? capacity.bytes : OthersPart(capacity.bytes);
  if (other_services >= most_services || other_languages >= capacity.languages_per_url ||
      other_bytes + bytes > most_bytes) {
    return Error::kInternalError;
  }
  return HasShare(registration, bytes, earlier) ? Error::kOk : Error::kDaBusyNow;
}

// What takes no more than what it replaces is let through: the share may have been made smaller meanwhile.
bool Registry::Store::HasShare(const Registration& registration, std::size_t bytes, EntryId earlier) const {
  if (registration.host.empty()) {
    return true;
  }
  const bool replaces_own = earlier != kNoEntry && services[earlier].host != nullptr &&
                            services[earlier].host->first == registration.host;
  const std::size_t given_back = replaces_own ? services[earlier].bytes : 0;
  return bytes <= given_back ||
         services.UseOf(registration.host).bytes - given_back + bytes <= registration.host_share;
}

AttributeList Registry::Store::ParsedAttributes(EntryId id) const {
  Result<AttributeList> attributes = AttributeList::Parse(services[id].attributes());
  return attributes ? std::move(attributes).value() : AttributeList();
}

void Registry::Store::KeepAttributes(EntryId id, const AttributeList& attributes) {
  services.ReplaceAttributes(id, attributes);
  Tell(RegistrationEvent::kAttributesRemoved, id);
}

}  // namespace slp
