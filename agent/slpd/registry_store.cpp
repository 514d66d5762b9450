#include "slpd/registry_store.h"

#include <utility>

namespace slp {

void Registry::Store::Tell(RegistrationEvent event, EntryId id) const {
  events.OnRegistration(event, services[id].View());
}

void Registry::Store::Drop(RegistrationEvent event, EntryId id) {
  Tell(event, id);
  services.Erase(id);
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
    values += attribute.values.size();
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
