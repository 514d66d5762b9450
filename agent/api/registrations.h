// Registering with the daemon of this host and taking it back (RFC 2614 sections 4.5.1 to 4.5.3). Each
// function blocks, at most net.slp.unicastMaximumWait for each address at which the daemon may listen; any
// thread.
//
// Each returns what the API function returns: SLP_OK when the daemon has done it, the error that it answers
// with, SLP_NETWORK_INIT_FAILED when none runs, SLP_NETWORK_TIMED_OUT when it doesn't answer.
#pragma once

#include <cstdint>
#include <string>

#include "api/request_context.h"
#include "slp.h"

namespace slp::client {

struct ServiceRegistration {
  std::string url;
  std::uint16_t lifetime = 0;  ///< seconds
  std::string type;            ///< of a URL that doesn't begin with "service:"; empty: its scheme
  std::string attributes;
  bool fresh = true;  ///< replaces what is registered, else adds to it
};

/// In the scopes of net.slp.useScopes, bound to the life of this process with net.slp.watchRegistrationPID.
/// SLP_INVALID_REGISTRATION, before anything is sent, when URL, type or attributes don't parse: a daemon that
/// lets such a thing in cannot be trusted to survive the next search.
SLPError Register(const ServiceRegistration& registration, const RequestContext& context);

/// Takes the service back in all languages, in the scopes of net.slp.useScopes.
SLPError Deregister(const std::string& url, const RequestContext& context);

/// Takes back only the attributes with `tags`, in the language of the handle.
SLPError DeleteAttributes(const std::string& url, const std::string& tags, const RequestContext& context);

}  // namespace slp::client
