// Service types and, below each, the groups of registrations that share type, language and scopes, so that a
// search decides on scope and language once a group. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "slpd/registry/type_groups.h"
#include "slpd/registry/value_index.h"
#include "text/service_type.h"

namespace slp {

struct IndexedType;

struct ServiceGroup {
  IndexedType* type = nullptr;
  std::string language;             ///< as its first registration gave it
  std::vector<std::string> scopes;  ///< likewise
  std::string scopes_text;          ///< the same as a string list
  std::vector<EntryId> entries;     ///< in no particular order
};

struct IndexedType {
  ServiceType type;
  std::string text;          ///< as its first registration gave it
  std::uint32_t serial = 0;  ///< tells it from other types in the value index
  std::map<std::string, ServiceGroup, std::less<>> groups;
};

class TypeIndex {
 public:
  /// The group for a registration, made when it is not there yet. Stays where it is until Remove.
  ServiceGroup& FindOrAdd(const ServiceType& type, std::string_view language,
                          const std::vector<std::string>& scopes);

  /// Takes an empty group away, and its type with the last one.
  void Remove(ServiceGroup& group);

  /// The types that answer a request for `requested`: the type itself and, when it is an abstract one, its
  /// concrete types.
  std::vector<const IndexedType*> Matching(const ServiceType& requested) const;

  /// All of them by their normal form.
  const std::map<std::string, std::unique_ptr<IndexedType>, std::less<>>& types() const { return types_; }

  /// Bytes of the heap that are reckoned for all of it, without the lists of entries.
  std::size_t bytes() const { return bytes_; }

  /// Bytes that a type and one group take whose texts are so long.
  static std::size_t BytesOf(std::size_t type_size, std::string_view language,
                             const std::vector<std::string>& scopes);

  const TypeGroups& groups() const { return groups_; }

 private:
  std::map<std::string, std::unique_ptr<IndexedType>, std::less<>> types_;
  TypeGroups groups_;
  std::uint32_t next_serial_ = 0;
  std::size_t bytes_ = 0;
};

}  // namespace slp
