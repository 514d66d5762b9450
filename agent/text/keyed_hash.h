// Hashes of texts that come from the network. Who can't know the key can't choose texts that fall into one
// bucket of a table, where each look would take as long as there are such texts. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace slp {

struct HashKey {
  std::uint64_t first = 0;
  std::uint64_t second = 0;
};

/// SipHash-1-3 (Aumasson and Bernstein, 2012), the variant for tables, whose hashes nobody gets to see.
std::uint64_t KeyedHash(std::string_view text, const HashKey& key);

/// By a key that this process drew at random when it needed the first hash.
std::uint64_t ProcessHash(std::string_view text);

/// The same for unordered containers.
struct TextHash {
  std::size_t operator()(std::string_view text) const { return static_cast<std::size_t>(ProcessHash(text)); }
};

}  // namespace slp
