// Service URLs (RFC 2609 section 2.1).
#include "text/service_url.h"

#include "fuzz/fuzz_target.h"
#include "text/characters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using slp::fuzz::Require;
  const std::string_view text = slp::fuzz::TextOf(data, size);
  const auto url = slp::ParseServiceUrl(text);
  if (url) {
    Require(!text.empty() && text.size() > url->type.size(), "a URL has more than a type");
    Require(text.find(url->type) != std::string_view::npos, "the type stands in the URL");
    Require(text.find(url->host) != std::string_view::npos, "the host stands in the URL");
    Require(text.find(url->part) != std::string_view::npos, "the rest stands in the URL");
    Require(url->port >= 0 && url->port <= 65535, "the port is one");
    for (const char character : text) {
      Require(!slp::IsControl(character) && !slp::IsSpace(character), "no blanks and control characters");
    }
  }
  return 0;
}
