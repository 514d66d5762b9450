// Attribute and service type requests (RFC 2608 sections 10.1 to 10.4).
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "slpd/registry/registration_check.h"
#include "slpd/requests/request_context.h"
#include "slpd/requests/request_lists.h"

#include "text/fold.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// A URL has an address behind its type, a type has none.
bool IsUrl(std::string_view text) {
  return text.find(":/") != std::string_view::npos;
}

}  // namespace

// 1. URL or type and tags must parse; one scope must be served.
// 2. A signature is given for all attributes of one URL only, and here not even for these.
// 3. The attributes of the one URL, or of all services of the type together.
Answer AnswerAttributeRequest(const RequestContext& context, const AttrRqst& request) {
  const auto error = [](Error code) { return ErrorAnswer(FunctionId::kAttrRqst, code); };
  const bool is_url = IsUrl(request.url);
  const Result<ServiceType> type = is_url ? Error::kParseError : ParseServiceType(request.url);
  const Result<std::vector<std::string>> tags = ParseTagList(request.tags);
  if (!tags || (is_url ? !ParseServiceUrl(request.url).ok() : !type.ok())) {
    return error(Error::kParseError);
  }
  const std::vector<std::string> scopes = ServedScopes(request.scopes, context.settings.scopes);
  if (scopes.empty()) {
    return error(Error::kScopeNotSupported);
  }
  if (!Trim(request.spi).empty()) {
    return error(is_url && tags->empty() ? Error::kAuthenticationUnknown : Error::kAuthenticationFailed);
  }

  Result<AttributeAnswer> found =
      is_url ? context.registry.FindAttributesOfUrl(request.url, scopes, context.header.language, *tags,
                                                    context.effort)
             : context.registry.FindAttributesOfType(*type, scopes, context.header.language, *tags,
                                                     kMaximumTextLength, context.effort);
  if (!found) {
    return error(found.error());
  }
  return Reply{AttrRply{Error::kOk, std::move(found->attributes), {}}, found->cut};
}

// 1. One scope must be served.
// 2. The types, as many as one text can hold.
Answer AnswerServiceTypeRequest(const RequestContext& context, const SrvTypeRqst& request) {
  const std::vector<std::string> scopes = ServedScopes(request.scopes, context.settings.scopes);
  if (scopes.empty()) {
    return ErrorAnswer(FunctionId::kSrvTypeRqst, Error::kScopeNotSupported);
  }
  std::vector<std::string> types = context.registry.FindTypes(scopes, request.naming_authority);
  std::size_t size = 0;
  const auto end = std::find_if(types.begin(), types.end(), [&size](const std::string& type) {
    size += type.size() + 1;
    return size > kMaximumTextLength + 1;
  });
  const bool cut = end != types.end();
  types.erase(end, types.end());
  return Reply{SrvTypeRply{Error::kOk, JoinStringList(types)}, cut};
}

}  // namespace slp
