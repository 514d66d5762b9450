// What is behind a registry: the stored services, and the steps that its changes and searches share. One
// thread at a time, the registry's.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "slpd/registry/registry.h"
#include "slpd/registry/service_store.h"

namespace slp {

/// A URL and, folded, a language.
using VariantKey = std::pair<std::string, std::string>;

struct Registry::Store {
  Store(EventSink& sink, Capacity limits) : events(sink), capacity(limits) {}

  EventSink& events;
  Capacity capacity;
  ServiceStore services;
  std::uint64_t touched = 0;

  /// A registration of the file that waits behind one of a message.
  struct Covered {
    Registration registration;
    Instant since;  ///< its lifetime runs from then on
  };
  std::map<VariantKey, Covered> covered;

  void Tell(RegistrationEvent event, EntryId id) const;

  /// Keeps `registration`, which is the file's, for when the one of a message is gone.
  void Cover(const Registration& registration, Instant since);

  /// The same for `id` when it is the file's: a message is about to take its place.
  void CoverIfFromFile(EntryId id);

  /// Tells of it, then erases it; what it covered takes its place.
  void Drop(RegistrationEvent event, EntryId id);

  /// Whether `registration` may be stored in the place of `earlier`, or as one more with kNoEntry: kOk,
  /// kInternalError when the registry is full, kDaBusyNow when its host has no share left. `attributes` are
  /// its own, parsed.
  Error CheckRoom(const Registration& registration, const AttributeList& attributes, EntryId earlier) const;

  /// Whether the host of `registration` may take `bytes` for it.
  bool HasShare(const Registration& registration, std::size_t bytes, EntryId earlier) const;

  AttributeList ParsedAttributes(EntryId id) const;

  /// Leaves only `attributes` of what it had; the rest of its life stays as it is.
  void KeepAttributes(EntryId id, const AttributeList& attributes);
};

}  // namespace slp
