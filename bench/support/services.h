// The services that the benchmarks register: one type, each with a URL and attributes of about 200 bytes
// together, told apart by the attribute "id".
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace bench {

inline constexpr const char* kType = "service:bench.tamro:http";

std::string Url(std::size_t index);

/// The attributes by tag, and as the list of all of them that goes on the wire.
std::map<std::string, std::string> AttributeValues(std::size_t index);
std::string Attributes(std::size_t index);

/// A filter that only this service matches.
std::string OnlyThis(std::size_t index);

/// The same by the end of a value: each value that services have must be looked at.
std::string OnlyThisByEnd(std::size_t index);

/// The same by its beginning.
std::string OnlyThisByBeginning(std::size_t index);

}  // namespace bench
