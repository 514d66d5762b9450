#include "slpd/agent_settings.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "slpd/directory/refresh_limit.h"
#include "text/attributes.h"
#include "text/characters.h"
#include "text/language.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// Characters that a URL writes as a percent sign and two digits (RFC 2396 section 2.4.1).
std::string DecodePercent(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && HexDigitValue(text[i + 1]) >= 0 &&
        HexDigitValue(text[i + 2]) >= 0) {
      decoded += static_cast<char>(HexDigitValue(text[i + 1]) * 16 + HexDigitValue(text[i + 2]));
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

/// "file:///etc/slp.reg" and "file:/etc/slp.reg" name "/etc/slp.reg", "file:///C:/slp.reg" names
/// "C:/slp.reg"; what is no such URL is a path already.
std::string PathOf(const std::string& url) {
  constexpr std::string_view kScheme = "file:";
  if (url.compare(0, kScheme.size(), kScheme) != 0) {
    return url;
  }
  std::string_view rest = std::string_view(url).substr(kScheme.size());
  if (rest.starts_with("//")) {
    const std::size_t path = rest.find('/', 2);
    rest = path == std::string_view::npos ? std::string_view() : rest.substr(path);
  }
  if (rest.size() > 2 && rest[0] == '/' && rest[2] == ':') {
    rest.remove_prefix(1);
  }
  return DecodePercent(rest);
}

}  // namespace

AgentSettings AgentSettings::From(const Properties& properties) {
  AgentSettings settings;
  std::vector<std::string> scopes = ListUnion({}, properties.GetStringList("net.slp.useScopes"));
  if (!scopes.empty()) {
    settings.scopes = std::move(scopes);
  }
  if (std::string language = properties.GetString("net.slp.locale"); IsValidLanguageTag(language)) {
    settings.language = std::move(language);
  }
  settings.mtu = static_cast<std::size_t>(std::max(properties.GetInt("net.slp.MTU"), 0));
  settings.reply_rate = static_cast<std::size_t>(std::max(properties.GetInt("net.slp.replyRate"), 1));
  settings.registrations_per_host =
      static_cast<std::size_t>(std::max(properties.GetInt("net.slp.maxRegistrationsPerHost"), 1));
  settings.bytes_per_host =
      static_cast<std::size_t>(std::max(properties.GetInt("net.slp.maxBytesPerHost"), 1));
  settings.watch_registration_pid = properties.GetBool("net.slp.watchRegistrationPID");
  if (std::string attributes = properties.GetString("net.slp.SAAttributes");
      AttributeList::Parse(attributes)) {
    settings.service_agent_attributes = std::move(attributes);
  }
  settings.directory_agent = properties.GetBool("net.slp.isDA");
  if (std::string attributes = properties.GetString("net.slp.DAAttributes");
      AttributeList::Parse(attributes)) {
    settings.directory_agent_attributes = std::move(attributes);
    settings.min_refresh_interval = MinimumRefreshInterval(settings.directory_agent_attributes);
  }
  settings.heartbeat = Seconds(properties.GetInt("net.slp.DAHeartBeat"));
  settings.check_source_address = properties.GetBool("net.slp.checkSourceAddr");
  settings.registration_file = PathOf(properties.GetString("net.slp.serializedRegURL"));
  settings.trace_messages = properties.GetBool("net.slp.traceMsg");
  settings.trace_drops = properties.GetBool("net.slp.traceDrop");
  settings.trace_registrations = properties.GetBool("net.slp.traceReg");
  return settings;
}

}  // namespace slp
