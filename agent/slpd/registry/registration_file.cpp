#include "slpd/registry/registration_file.h"

#include <charconv>
#include <optional>
#include <set>
#include <utility>

#include "properties/file_lines.h"
#include "properties/file_text.h"
#include "slpd/registry/registration_check.h"
#include "text/fold.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// Takes what stands behind the last comma of `text` away from it; all of it when there is no comma.
std::string_view TakeLastField(std::string_view& text) {
  const std::size_t comma = text.rfind(',');
  const std::string_view field = comma == std::string_view::npos ? text : text.substr(comma + 1);
  text = comma == std::string_view::npos ? std::string_view() : text.substr(0, comma);
  return Trim(field);
}

/// A decimal number from 1 to 65535 in at most five digits.
std::optional<std::uint16_t> ParseLifetime(std::string_view text) {
  std::uint16_t lifetime = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), lifetime);
  if (error != std::errc() || end != text.data() + text.size() || text.size() > 5 || lifetime == 0) {
    return std::nullopt;
  }
  return lifetime;
}

class Parser {
 public:
  Parser(std::string_view text, const std::string& file, const std::vector<std::string>& served_scopes,
         std::vector<PropertyProblem>& problems)
      : lines_(SplitFileLines(text)), file_(file), served_scopes_(served_scopes), problems_(problems) {}

  // 1. Blank lines part the entries.
  // 2. An entry begins with URL, language and lifetime; directly behind them may stand its scopes.
  // 3. Every other line of it is an attribute.
  // 4. An entry with a fault anywhere is left out, with the line that has the fault; so is a second one of a
  // URL in the same language.
  std::vector<FileRegistration> Parse() {
    std::vector<FileRegistration> entries;
    while (next_ != lines_.size()) {
      if (lines_[next_].text.empty()) {
        ++next_;
        continue;
      }
      if (std::optional<FileRegistration> entry = ParseEntry()) {
        entries.push_back(std::move(*entry));
      }
      while (next_ != lines_.size() && !lines_[next_].text.empty()) {
        ++next_;
      }
    }
    return entries;
  }

 private:
  bool AtEntryEnd() const { return next_ == lines_.size() || lines_[next_].text.empty(); }

  void Problem(int line, std::string text) { problems_.push_back({file_, line, std::move(text)}); }

  std::optional<FileRegistration> ParseEntry() {
    FileRegistration entry;
    entry.line = lines_[next_].number;
    entry.registration.source = RegistrationSource::kFile;
    if (!ParseFirstLine(lines_[next_++], entry.registration) || !ParseScopes(entry.registration) ||
        !ParseAttributes(entry.registration)) {
      return std::nullopt;
    }
    if (!CheckRegistration(entry.registration)) {
      Problem(entry.line, "cannot be registered: URL, language, type or attributes are malformed");
      return std::nullopt;
    }
    if (!names_.emplace(entry.registration.url, Fold(entry.registration.language)).second) {
      Problem(entry.line, "registered twice: \"" + entry.registration.url + "\"");
      return std::nullopt;
    }
    return entry;
  }

  // From the end, for a URL may hold commas.
  bool ParseFirstLine(const FileLine& line, Registration& registration) {
    std::string_view rest = line.text;
    std::string_view last = TakeLastField(rest);
    std::string_view type;
    std::optional<std::uint16_t> lifetime = ParseLifetime(last);
    if (!lifetime) {
      type = last;
      last = TakeLastField(rest);
      lifetime = ParseLifetime(last);
    }
    if (!lifetime) {
      Problem(line.number, "no lifetime from 1 to 65535 behind URL and language");
      return false;
    }
    registration.lifetime = *lifetime;
    registration.permanent = *lifetime == kMaximumLifetime;
    registration.language = TakeLastField(rest);
    registration.url = Trim(rest);
    const Result<ServiceUrl> url = ParseServiceUrl(registration.url);
    if (!url) {
      Problem(line.number, "not a service URL: \"" + registration.url + "\"");
      return false;
    }
    registration.service_type = url->type;
    if (type.empty()) {
      return true;
    }
    if (EqualFolded(registration.url.substr(0, 8), "service:")) {
      Problem(line.number,
              "the type of a service: URL stands in the URL; the one behind the lifetime is ignored");
    } else {
      registration.service_type = type;
    }
    return true;
  }

  bool ParseScopes(Registration& registration) {
    registration.scopes = served_scopes_;
    if (AtEntryEnd()) {
      return true;
    }
    const FileLine& line = lines_[next_];
    const std::size_t equals = line.text.find('=');
    if (equals == std::string_view::npos || !EqualFolded(line.text.substr(0, equals), "scopes")) {
      return true;
    }
    ++next_;
    registration.scopes = SplitStringList(line.text.substr(equals + 1));
    if (registration.scopes.empty() || !ListContainsAll(served_scopes_, registration.scopes)) {
      Problem(line.number, "not all of these scopes are among net.slp.useScopes");
      return false;
    }
    return true;
  }

  bool ParseAttributes(Registration& registration) {
    std::vector<std::string> attributes;
    for (; !AtEntryEnd(); ++next_) {
      const FileLine& line = lines_[next_];
      const bool keyword = line.text.find('=') == std::string_view::npos;
      std::string attribute = keyword ? std::string(line.text) : '(' + std::string(line.text) + ')';
      const Result<AttributeList> parsed = AttributeList::Parse(attribute);
      if (!parsed || parsed->items().size() != 1) {
        Problem(line.number, "not an attribute: \"" + std::string(line.text) + "\"");
        return false;
      }
      attributes.push_back(std::move(attribute));
    }
    registration.attributes = JoinStringList(attributes);
    return true;
  }

  std::vector<FileLine> lines_;
  std::size_t next_ = 0;
  std::set<std::pair<std::string, std::string>> names_;  ///< URLs, each with its language folded
  const std::string& file_;
  const std::vector<std::string>& served_scopes_;
  std::vector<PropertyProblem>& problems_;
};

constexpr const char* kNoRoom = "no room for it in the registry";

}  // namespace

std::vector<FileRegistration> ParseRegistrationFile(std::string_view text, const std::string& file,
                                                    const std::vector<std::string>& served_scopes,
                                                    std::vector<PropertyProblem>& problems) {
  return Parser(text, file, served_scopes, problems).Parse();
}

RegistrationFile ReadRegistrationFile(const AgentSettings& settings, std::vector<PropertyProblem>& problems) {
  RegistrationFile file{settings.registration_file, {}};
  if (file.path.empty()) {
    return file;
  }
  if (const std::optional<std::string> text = ReadFileText(file.path)) {
    file.entries = ParseRegistrationFile(*text, file.path, settings.scopes, problems);
  } else {
    problems.push_back({file.path, 0, "cannot be read"});
  }
  return file;
}

void CheckRoom(const RegistrationFile& file, const Registry& registry,
               std::vector<PropertyProblem>& problems) {
  if (const FileRegistration* const entry = registry.FindWithoutRoom(file.entries)) {
    problems.push_back({file.path, entry->line, kNoRoom});
  }
}

std::size_t LoadRegistrations(const RegistrationFile& file, Registry& registry, Instant now,
                              std::vector<PropertyProblem>& problems) {
  registry.DropFileRegistrations();
  std::size_t registered = 0;
  for (const FileRegistration& entry : file.entries) {
    const Registration& registration = entry.registration;
    const bool left_to_program = registry.Find(registration.url, registration.language).has_value();
    if (registry.Register(registration, now) != Error::kOk) {
      problems.push_back({file.path, entry.line, kNoRoom});
    } else if (left_to_program) {
      problems.push_back(
          {file.path, entry.line, "left to the program that registered it: \"" + registration.url + "\""});
    } else {
      ++registered;
    }
  }
  return registered;
}

}  // namespace slp
