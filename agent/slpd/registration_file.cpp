#include "slpd/registration_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <optional>
#include <utility>

#include "slpd/registration_check.h"
#include "text/fold.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {
namespace {

struct Line {
  int number = 0;
  std::string_view text;  ///< trimmed
};

/// The lines that are not comments, whichever way they end; blank ones stay, for they part the entries.
std::vector<Line> SplitLines(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::vector<Line> lines;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = Trim(text.substr(0, end));
    text.remove_prefix(end);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, text.size()));
    if (line.empty() || (line.front() != '#' && line.front() != ';')) {
      lines.push_back({number, line});
    }
  }
  return lines;
}

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
      : lines_(SplitLines(text)), file_(file), served_scopes_(served_scopes), problems_(problems) {}

  // 1. Blank lines part the entries.
  // 2. An entry begins with URL, language and lifetime; directly behind them may stand its scopes.
  // 3. Every other line of it is an attribute.
  // 4. An entry with a fault anywhere is left out, with the line that has the fault.
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
    return entry;
  }

  // From the end, for a URL may hold commas.
  bool ParseFirstLine(const Line& line, Registration& registration) {
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
    const Line& line = lines_[next_];
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
      const Line& line = lines_[next_];
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

  std::vector<Line> lines_;
  std::size_t next_ = 0;
  const std::string& file_;
  const std::vector<std::string>& served_scopes_;
  std::vector<PropertyProblem>& problems_;
};

/// None when the file cannot be opened or, as a folder, not be read.
std::optional<std::string> ReadFile(const std::string& path) {
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

}  // namespace

std::vector<FileRegistration> ParseRegistrationFile(std::string_view text, const std::string& file,
                                                    const std::vector<std::string>& served_scopes,
                                                    std::vector<PropertyProblem>& problems) {
  return Parser(text, file, served_scopes, problems).Parse();
}

std::size_t LoadRegistrationFile(const AgentSettings& settings, Registry& registry, Instant now,
                                 std::vector<PropertyProblem>& problems) {
  const std::string& file = settings.registration_file;
  const std::optional<std::string> text = file.empty() ? std::string() : ReadFile(file);
  if (!text) {
    problems.push_back({file, 0, "cannot be read"});
    return 0;
  }

  registry.DropFileRegistrations();
  std::size_t registered = 0;
  for (const FileRegistration& entry : ParseRegistrationFile(*text, file, settings.scopes, problems)) {
    const Registration& registration = entry.registration;
    const std::optional<RegistrationView> earlier = registry.Find(registration.url, registration.language);
    if (earlier && earlier->source == RegistrationSource::kFile) {
      problems.push_back({file, entry.line, "registered twice: \"" + registration.url + "\""});
    } else if (registry.Register(registration, now) != Error::kOk) {
      problems.push_back({file, entry.line, "no room for it in the registry"});
    } else if (earlier) {
      problems.push_back(
          {file, entry.line, "left to the program that registered it: \"" + registration.url + "\""});
    } else {
      ++registered;
    }
  }
  return registered;
}

}  // namespace slp
