// What is behind a registry: the stored services, and the steps that its changes and searches share. One
// thread at a time, the registry's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "slpd/registry.h"
#include "slpd/service_store.h"

namespace slp {

struct Registry::Store {
  Store(EventSink& sink, Capacity limits) : events(sink), capacity(limits) {}

  EventSink& events;
  Capacity capacity;
  ServiceStore services;
  std::uint64_t touched = 0;

  void Tell(RegistrationEvent event, EntryId id) const;

  /// Tells of it, then erases it.
  void Drop(RegistrationEvent event, EntryId id);

  /// Whether `registration` may be stored in the place of `earlier`, or as one more with kNoEntry.
  /// `attributes` are its own, parsed.
  bool HasRoom(const Registration& registration, const AttributeList& attributes, EntryId earlier) const;

  AttributeList ParsedAttributes(EntryId id) const;

  /// The rest of its life stays as it is.
  void RemoveAttributes(EntryId id, const std::vector<std::string>& tag_patterns);
};

}  // namespace slp
