// The three searches of the C API behind their callbacks (RFC 2614 sections 4.5.4 to 4.5.6). Each reports to
// `deliver`, on the calling thread, and blocks until it has ended; any thread.
//
// Each returns what the API function returns. A parameter that is refused is only returned; every other error
// goes to the callback too, so that a caller who looks at one of the two misses nothing.
#pragma once

#include <string>

#include "api/request_context.h"
#include "api/result_report.h"

namespace slp::client {

/// An empty scope list stands for the scopes of net.slp.useScopes, in all three.
struct ServiceQuery {
  std::string type;
  std::string scopes;
  std::string predicate;
};

/// Reports every URL once, with the lifetime that came first, as soon as a reply carries it.
/// SLP_PARAMETER_BAD without a service type; SLP_PARSE_ERROR, before anything is sent, for a predicate that
/// is none.
SLPError FindServices(const ServiceQuery& query, const RequestContext& context, const Deliver& deliver);

struct AttributeQuery {
  std::string url_or_type;
  std::string scopes;
  std::string tags;  ///< empty: all
};

/// Reports the attribute list of each agent that has one, as soon as it comes, equal lists once. A search by
/// URL is over with the first list. When there are only empty lists, one is reported. SLP_PARAMETER_BAD for
/// what is neither URL nor service type.
SLPError FindAttributes(const AttributeQuery& query, const RequestContext& context, const Deliver& deliver);

struct TypeQuery {
  std::string naming_authority;  ///< "*": all; empty: IANA's
  std::string scopes;
};

/// Reports all types of all agents once, as one list, when the search is over. SLP_PARAMETER_BAD for the
/// naming authority "IANA", which is written as the empty one (RFC 2614 section 4.5.4).
SLPError FindServiceTypes(const TypeQuery& query, const RequestContext& context, const Deliver& deliver);

}  // namespace slp::client
