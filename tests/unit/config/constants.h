// Checking the exported constants.
#pragma once

#include <type_traits>

namespace kelsd {

/// Whether `constant` is a constant of exactly type T and holds `value`.
template <typename T, typename Constant>
bool HoldsExactly(Constant& constant, T value) {
  return std::is_same_v<Constant, const T> && constant == value;
}

}  // namespace kelsd
