#include "hints.h"

#include <map>

#include "slpd_hints.h"

namespace kelsd_tool {

using kelsd::SResult;

std::string HintFor(SResult::EError code) {
  static const std::map<SResult::EError, const char*> hints = {
      {SResult::ERR_UNKNOWN,
       "The asked agent may serve other scopes only. Name one of its scopes with --scope, or add the scope "
       "to "
       "net.slp.useScopes there ('kelsd config get useScopes' shows those of this host)."},
      {SResult::ERR_OUT_OF_MEMORY, "Free memory and try again; nothing has been done."},
      {SResult::ERR_BASIC_API, "A call of the system failed; 'kelsd doctor' checks what it needs."},
      {SResult::ERR_AUTHENTICATION_ABSENT, "Switch net.slp.securityEnabled off on both sides."},
      {SResult::ERR_AUTHENTICATION_FAILED, "Switch net.slp.securityEnabled off on both sides."},
      {SResult::ERR_BUFFER_OVERFLOW,
       "The request is too large for multicast: shorten the filter, name fewer scopes, or ask one host with "
       "--address."},
      {SResult::ERR_TAG_NOT_UNIQUE, "Give each attribute once; letter case makes no difference."},
      {SResult::ERR_VALUE_BAD_CHARACTERS, "Give the attribute another value."},
      {SResult::ERR_SCOPE_EMPTY, "Name a scope, e.g. --scope tamro"},
      {SResult::ERR_INVALID_PARAMETER,
       "Check the values given; 'kelsd VERB --help' lists what each option takes."},
      {SResult::ERR_PARSE_ERROR,
       "An agent could not read the request. Check that the filter's brackets balance, e.g. "
       "\"(&(x-server-name=srv1)(x-version=1*))\"."},
      {SResult::ERR_SCOPE_NOT_SUPPORTED,
       "The agent serves other scopes. Name one of its scopes with --scope, or add the scope to "
       "net.slp.useScopes in its configuration."},
      {SResult::ERR_NETWORK_INIT_FAILED,
       "Check that slpd runs on this host (start it: kelsd slpd start), and that --interface and "
       "net.slp.interfaces name addresses of this host."},
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
      {SResult::ERR_INVALID_REGISTRATION,
       "slpd refused the registration. Check URL, scopes and lifetime; a service is registered on its own "
       "host."},
      {SResult::ERR_INVALID_DEREGISTRATION,
       "slpd refused. 'kelsd find' shows what is registered, and with which URL."},
      {SResult::ERR_SCM_ACCESS, "Run this as a user who may control services (administrator)."},
      {SResult::ERR_SLPD_OPEN, kSlpdOpenHint},
      {SResult::ERR_SLPD_QUERY,
       "Check that this user may read the state of slpd; 'kelsd doctor' tells more."},
      {SResult::ERR_SLPD_ALREADY_RUNNING, "Nothing to do; for a new start: kelsd slpd restart"},
      {SResult::ERR_SLPD_WAIT_TIMEOUT,
       "slpd takes long. Ask again with 'kelsd slpd status', and look into its log."},
      {SResult::ERR_SLPD_START, kSlpdStartHint},
      {SResult::ERR_SLPD_STOP, "Check that slpd was started by this user, or run this as administrator."},
      {SResult::ERR_SLPD_PROCESS_OPEN, "Start the daemon: kelsd slpd start"},
      {SResult::ERR_CONF_OPEN,
       "Another program may be writing the file: try again. Else check that this user may "
       "read and write it."},
      {SResult::ERR_CONF_LOAD, "The file could not be read. Check its permissions and its content."},
      {SResult::ERR_CONF_WRITE, "Check that this user may write the file, and that the disk is not full."},
      {SResult::ERR_CONF_DIR_CREATE, "Create the folder, or let OpenSLPConfig name a file in another one."},
      {SResult::ERR_CONF_CREATE,
       "Create the file, or let OpenSLPConfig name one in a folder that can be written."},
      {SResult::ERR_ENV_NOT_SET,
       "Set the environment variable OpenSLPConfig to the configuration file, or name it with --config FILE"},
      {SResult::ERR_RESTART_REQUIRED,
       "SLP could not read the file that OpenSLPConfig names: check that this user may. An application that "
       "changed the variable after SLP had read it must be started again."},
      {SResult::ERR_PROPERTY_GET, "SLP does not know the setting; check that the installed SLP is recent."},
      {SResult::ERR_PROPERTY_PARSE,
       "Correct the value in the configuration file; until then the default counts."},
      {SResult::ERR_NOT_INITIALIZED,
       "SLP could not be started; check the file that OpenSLPConfig names, and that its folder can be "
       "written."},
  };
  const auto hint = hints.find(code);
  return hint == hints.end() ? std::string() : hint->second;
}

}  // namespace kelsd_tool
