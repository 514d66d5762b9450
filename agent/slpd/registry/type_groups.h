// The groups of IPv6 in which requests for the registered types are heard (RFC 3111 section 4.1). One thread
// at a time.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "text/service_type.h"

namespace slp {

class TypeGroups {
 public:
  /// A type is there from now on. It is asked for by its own name, and by that of its abstract type.
  void Add(const ServiceType& type) { Count(type, 1); }

  /// One that was added is gone.
  void Remove(const ServiceType& type) { Count(type, -1); }

  /// As TypeGroupNumber gives them, ascending.
  std::vector<std::uint16_t> Numbers() const;

  /// How often Numbers has changed.
  std::uint64_t changes() const { return changes_; }

 private:
  void Count(const ServiceType& type, int difference);
  void CountNumber(std::uint16_t number, int difference);

  std::array<int, kTypeGroups> types_{};  ///< by the number of their group
  std::uint64_t changes_ = 0;
};

}  // namespace slp
