// Registrations and deregistrations from local programs (RFC 2608 sections 8.3, 8.4, 9.3 and 10.6).
#include <string>
#include <utility>
#include <vector>

#include "slpd/process_binding.h"
#include "slpd/request_context.h"
#include "slpd/request_lists.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// The process that the registration is to be bound to; 0: none. kParseError for a payload that is no process
/// id.
Result<std::uint32_t> BoundProcess(const RequestContext& context, const std::string& url) {
  const Result<std::uint32_t> process_id = ProcessIdOf(context.header.extensions);
  if (!process_id || *process_id == 0 || !context.settings.watch_registration_pid) {
    return process_id ? Result<std::uint32_t>(0U) : process_id;
  }
  if (context.process_exists && !context.process_exists(*process_id)) {
    context.events.OnProcessNotWatched(*process_id, url);
    return 0U;
  }
  return process_id;
}

}  // namespace

// 1. Never from a group, and only from the own host: a service agent serves the programs of its host,
// whatever address their URLs name.
// 2. Signatures cannot be verified here, so what carries them is refused (RFC 2608 section 8.5).
// 3. It is registered in those of its scopes that are served; there must be one.
// 4. Fresh: it replaces; else it updates what is there (RFC 2608 section 9.3).
Answer AnswerRegistration(const RequestContext& context, const SrvReg& request) {
  const auto acknowledge = [](Error error) { return ErrorAnswer(FunctionId::kSrvReg, error); };
  if (context.multicast) {
    return Silence{"registration sent to a group"};
  }
  if (!context.origin.own_host) {
    return acknowledge(Error::kMessageNotSupported);
  }
  if (!request.url.authentication.empty() || !request.authentication.empty()) {
    return acknowledge(Error::kAuthenticationUnknown);
  }
  std::vector<std::string> scopes = ServedScopes(request.scopes, context.settings.scopes);
  if (scopes.empty()) {
    return acknowledge(Error::kScopeNotSupported);
  }
  const Result<std::uint32_t> process_id = BoundProcess(context, request.url.url);
  if (!process_id) {
    return acknowledge(process_id.error());
  }

  const Registration registration{.url = request.url.url,
                                  .service_type = request.service_type,
                                  .language = context.header.language,
                                  .scopes = std::move(scopes),
                                  .attributes = request.attributes,
                                  .lifetime = request.url.lifetime,
                                  .permanent = false,
                                  .process_id = *process_id,
                                  .source = RegistrationSource::kMessage};
  return acknowledge(context.header.fresh ? context.registry.Register(registration, context.now)
                                          : context.registry.Update(registration, context.now));
}

// 1. Never from a group, and only from the own host: a service agent serves the programs of its host,
// whatever address their URLs name.
// 2. The tags must parse; without any the whole service goes.
Answer AnswerDeregistration(const RequestContext& context, const SrvDereg& request) {
  const auto acknowledge = [](Error error) { return ErrorAnswer(FunctionId::kSrvDereg, error); };
  if (context.multicast) {
    return Silence{"deregistration sent to a group"};
  }
  if (!context.origin.own_host) {
    return acknowledge(Error::kMessageNotSupported);
  }
  const Result<std::vector<std::string>> tags = ParseTagList(request.tags);
  if (!tags) {
    return acknowledge(tags.error());
  }
  return acknowledge(context.registry.Deregister(request.url.url, SplitStringList(request.scopes), *tags));
}

}  // namespace slp
