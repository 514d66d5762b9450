// What is measured: the operations at a number of registrations, each with a check of its answer.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bench/end_to_end/session.h"

namespace bench {

/// Runs beyond which an operation isn't repeated: of what an index serves, and of what looks at every
/// registration or delivers it.
inline constexpr std::size_t kRuns = 2000;
inline constexpr std::size_t kScans = 20;

/// What one search delivers at most: the reply counts its URLs in 16 bits (RFC 2608 section 8.2).
inline constexpr std::size_t kMostDelivered = 65'535;

// Names by which targets find what was measured.
inline constexpr const char* kRegister = "register";
inline constexpr const char* kFindOne = "find one, equality filter";
inline constexpr const char* kAttributesOfOne = "attributes of one";
inline constexpr const char* kDeregister = "deregister";

struct Operation {
  std::string name;
  std::size_t runs;
  bool growth_is_limited;  ///< whether the time may hardly grow with the number of registrations
  bool library_has_it;     ///< whether the library's classes offer it too
  /// Throws std::runtime_error when the operation fails or its answer is wrong. Called on several threads,
  /// with a session each.
  std::function<void(Session& session, std::size_t number)> run;
};

/// Registers services beyond `size`, one a number; Deregistering takes them away again.
Operation Registering(std::size_t size);
Operation FindingOne(std::size_t size);
Operation Deregistering(std::size_t size);

/// All operations at `size` registrations, in the order in which they are to run: what the first one
/// registers is what the last one takes away, so that the size stays.
std::vector<Operation> OperationsAt(std::size_t size);

/// Registers services until there are `size` instead of `before`.
void Fill(const OpenSession& open, std::size_t before, std::size_t size);

/// Takes `size` services away again.
void Empty(const OpenSession& open, std::size_t size);

}  // namespace bench
