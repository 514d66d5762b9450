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

bool Registry::Store::HasRoom(const Registration& registration, EntryId earlier) const {
  const bool replaces = earlier != kNoEntry;
  const std::size_t other_text = services.text_bytes() - (replaces ? services[earlier].text.size() : 0);
  return services.size() - (replaces ? 1 : 0) < capacity.registrations &&
         other_text + registration.url.size() + registration.attributes.size() <= capacity.text_bytes;
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
