#include "properties/file_text.h"

#include <array>
#include <fstream>
#include <utility>

namespace slp {

// By the stream's own reading, which tells of a failure; its iterators throw one.
std::optional<std::string> ReadFileText(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream.is_open()) {
    return std::nullopt;
  }
  std::string text;
  std::array<char, 4096> block{};
  do {
    stream.read(block.data(), block.size());
    text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
  } while (stream);
  return stream.bad() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace slp
