#include "hints.h"

#include <map>

namespace kelsd_tool {

using kelsd::SResult;

std::string HintFor(SResult::EError code) {
  static const std::map<SResult::EError, const char*> hints = {
      {SResult::ERR_INVALID_PARAMETER,
       "Check the values given; 'kelsd VERB --help' lists what each option takes."},
      {SResult::ERR_PARSE_ERROR,
       "An agent could not read the request. Check that the filter's brackets balance, e.g. "
       "\"(&(x-server-name=srv1)(x-version=1*))\"."},
      {SResult::ERR_SCOPE_NOT_SUPPORTED,
       "The agent serves other scopes. Name one of its scopes with --scope, or add the scope to "
       "net.slp.useScopes in its configuration."},
      {SResult::ERR_NETWORK_INIT_FAILED, "Start the daemon on this host: slpd"},
      {SResult::ERR_NETWORK_TIMED_OUT,
       "Nobody answered at that address. Check that slpd runs there, that UDP and TCP port net.slp.port (427 "
       "by "
       "default) is open in the firewalls between, or wait longer with --timeout."},
      {SResult::ERR_NETWORK_ERROR, "Check the network connection and the addresses given with --interface."},
      {SResult::ERR_BASIC_NETWORK_INIT_FAILED,
       "The network could not be used. Check net.slp.interfaces, or name an address of this host with "
       "--interface."},
      {SResult::ERR_URL_EMPTY, "Give a service URL, e.g. service:zdrest.tamro:http://10.0.0.5:8080"},
      {SResult::ERR_URL_INVALID,
       "A service URL reads service:TYPE://HOST[:PORT][/PATH], e.g. "
       "service:zdrest.tamro:http://10.0.0.5:8080"},
      {SResult::ERR_URL_ADDRESS_EMPTY,
       "The URL names no host; behind '://' comes HOST[:PORT], e.g. "
       "service:zdrest.tamro:http://10.0.0.5:8080"},
      {SResult::ERR_TAG_EMPTY, "Name an attribute, e.g. --tag x-version"},
      {SResult::ERR_TAG_BAD_CHARACTERS,
       "Attribute tags look like x-server-name; give several with several --tag."},
      {SResult::ERR_SCOPE_BAD_CHARACTERS, "Give one scope with each --scope, e.g. --scope tamro --scope lab"},
  };
  const auto hint = hints.find(code);
  return hint == hints.end() ? std::string() : hint->second;
}

}  // namespace kelsd_tool
