#include "slpd/registry_store.h"

#include <utility>

#include "slpd/registration_check.h"
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

bool Registry::Store::HasRoom(const Registration& registration, const AttributeList& attributes,
                              EntryId earlier) const {
  std::size_t other_services = services.size();
  std::size_t other_text = services.text_bytes();
  std::size_t other_values = services.values().size();
  std::size_t other_languages = 0;
  if (earlier != kNoEntry) {
    other_services -= 1;
    other_text -= services[earlier].text_bytes();
    other_values -= services.values().Length(services[earlier].values);
  } else {
    for (EntryId id = services.FindUrl(registration.url); id != kNoEntry; id = services[id].next_variant) {
      ++other_languages;
    }
  }
  std::size_t values = 0;
  for (const Attribute& attribute : attributes.items()) {
    values += attribute.IsKeyword() ? 1 : attribute.values.size();
  }
  return other_services < capacity.registrations && other_languages < capacity.languages_per_url &&
         other_values + values <= capacity.values &&
         other_text + registration.url.size() + registration.service_type.size() +
                 registration.attributes.size() <=
             capacity.text_bytes;
}

AttributeList Registry::Store::ParsedAttributes(EntryId id) const {
  Result<AttributeList> attributes = AttributeList::Parse(services[id].attributes());
  return attributes ? std::move(attributes).value() : AttributeList();
}

void Registry::Store::RemoveAttributes(EntryId id, const std::vector<std::string>& tag_patterns) {
  AttributeList attributes = ParsedAttributes(id);
  attributes.RemoveMatching(tag_patterns);
  services.ReplaceAttributes(id, attributes);
  Tell(RegistrationEvent::kAttributesRemoved, id);
}

}  // namespace slp
