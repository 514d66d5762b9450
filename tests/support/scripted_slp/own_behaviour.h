// What the provider does where a test says nothing: the rules of the grammar functions and the built-in
// properties. Stateless: any thread may call it.
#pragma once

#include <slp.h>

#include <map>
#include <optional>
#include <string>

namespace scripted_slp {

/// The five parts of a service URL.
struct ParsedURL {
  std::string type;
  std::string host;
  int port = 0;
  std::string family;
  std::string part;
};

/// None: SLP_PARSE_ERROR.
std::optional<ParsedURL> ParseURL(const std::string& url);
std::optional<std::string> AttributeValue(const std::string& list, const std::string& tag);
std::optional<std::string> Escape(const std::string& text, bool is_tag);
std::optional<std::string> Unescape(const std::string& text);

/// All keys that read non-null from the start.
const std::map<std::string, std::string>& BuiltInProperties();

}  // namespace scripted_slp
