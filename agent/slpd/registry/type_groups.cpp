#include "slpd/registry/type_groups.h"

namespace slp {

std::vector<std::uint16_t> TypeGroups::Numbers() const {
  std::vector<std::uint16_t> numbers;
  for (std::uint16_t number = 0; number < kTypeGroups; ++number) {
    if (types_[number] > 0) {
      numbers.push_back(number);
    }
  }
  return numbers;
}

void TypeGroups::Count(const ServiceType& type, int difference) {
  CountNumber(TypeGroupNumber(type.AbstractString()), difference);
  if (type.has_concrete) {
    CountNumber(TypeGroupNumber(type.ToString()), difference);
  }
}

void TypeGroups::CountNumber(std::uint16_t number, int difference) {
  const bool before = types_[number] > 0;
  types_[number] += difference;
  if (before != (types_[number] > 0)) {
    ++changes_;
  }
}

}  // namespace slp
