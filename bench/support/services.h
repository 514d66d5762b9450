// The services that the benchmarks register: one type, each with a URL and attributes of about 200 bytes
// together, told apart by the attribute "id".
#pragma once

#include <cstddef>
#include <string>

namespace bench {

inline constexpr const char* kType = "service:bench.tamro:http";

std::string Url(std::size_t index);
std::string Attributes(std::size_t index);

/// A filter that only this service matches.
std::string OnlyThis(std::size_t index);

/// The same with a wildcard, so that no index of values helps.
std::string OnlyThisByWildcard(std::size_t index);

}  // namespace bench
