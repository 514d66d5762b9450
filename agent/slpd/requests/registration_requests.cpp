// Registrations and deregistrations from local programs and, for a directory agent, from other hosts (RFC
// 2608 sections 8.3, 8.4, 9.3 and 10.6).
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "slpd/requests/process_binding.h"
#include "slpd/requests/request_context.h"
#include "slpd/requests/request_lists.h"
#include "text/ip_address.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// The process that the registration is to be bound to; 0: none. kParseError for a payload that is no process
/// id.
Result<std::uint32_t> BoundProcess(const RequestContext& context, const std::string& url) {
  const Result<std::uint32_t> process_id = ProcessIdOf(context.header.extensions);
  if (!process_id || *process_id == 0 || !context.settings.watch_registration_pid ||
      !context.origin.own_host) {
    return process_id ? Result<std::uint32_t>(0U) : process_id;
  }
  if (context.process_exists && !context.process_exists(*process_id)) {
    context.events.OnProcessNotWatched(*process_id, url);
    return 0U;
  }
  return process_id;
}

/// Digits and dots alone are an address, or are taken for one by some: "10.0.0.010", whose last part they
/// read as octal, or "167772161".
bool NamesAddress(std::string_view host) {
  return IsIpAddress(host) || (!host.empty() && host.find_first_not_of("0123456789.") == std::string::npos);
}

/// kOk when the sender may change what is registered under `url`. The own host may, whatever its URLs name.
/// Other hosts may with a directory agent, when they stand in one of its networks, and by
/// net.slp.checkSourceAddr only what names no address but theirs and what nobody but they have registered: a
/// host's name can be compared with no sender, but whoever came first with it can.
Error CheckSender(const RequestContext& context, const std::string& url) {
  if (context.origin.own_host) {
    return Error::kOk;
  }
  if (!context.settings.directory_agent || !context.origin.own_network) {
    return Error::kMessageNotSupported;
  }
  if (!context.settings.check_source_address) {
    return Error::kOk;
  }
  const Result<ServiceUrl> parsed = ParseServiceUrl(url);
  const bool names_another =
      parsed && NamesAddress(parsed->host) && !SameIpAddress(parsed->host, context.origin.address);
  return names_another || context.registry.OthersHave(url, context.origin.address)
             ? Error::kInvalidRegistration
             : Error::kOk;
}

/// Whether the sender may have one registration more, or this one already is its own.
bool HasRoomFor(const RequestContext& context, const std::string& url) {
  if (context.origin.own_host || context.registry.UseOf(context.origin.address).registrations <
                                     context.settings.registrations_per_host) {
    return true;
  }
  const std::optional<RegistrationView> earlier = context.registry.Find(url, context.header.language);
  return earlier && earlier->host == context.origin.address;
}

/// A client tries again later (RFC 2608 section 7).
Error RefuseHostAtLimit(const RequestContext& context) {
  context.events.OnHostAtLimit(context.origin.address);
  return Error::kDaBusyNow;
}

/// Whether another host's agent changes what it has registered more often than this directory agent's
/// advertisement allows (RFC 2608 section 8.5).
bool IsTooSoon(const RequestContext& context, const std::string& url) {
  if (context.origin.own_host) {
    return false;
  }
  const std::optional<RegistrationView> earlier = context.registry.Find(url, context.header.language);
  return earlier && earlier->expiry &&
         context.now < *earlier->expiry - Seconds(earlier->lifetime) + context.settings.min_refresh_interval;
}

/// Another agent of this host, confined to an address of its own, registers from there.
RegistrationSource SourceOf(const RequestContext& context) {
  const RequestOrigin& origin = context.origin;
  const bool own_program =
      origin.own_host && (origin.address == "127.0.0.1" || origin.address == "::1" ||
                          ListContains(context.settings.own_addresses, WithoutZone(origin.address)));
  return own_program ? RegistrationSource::kMessage : RegistrationSource::kAgent;
}

}  // namespace

// 1. Never from a group, and only from who may.
// 2. Signatures cannot be verified here, so what carries them is refused (RFC 2608 section 8.5).
// 3. It is registered in those of its scopes that are served; there must be one.
// 4. Another host may have only so many, and may not update them too often.
// 5. Fresh: it replaces; else it updates what is there (RFC 2608 section 9.3). Another host may take only so
// much memory.
Answer AnswerRegistration(const RequestContext& context, const SrvReg& request) {
  const auto acknowledge = [](Error error) { return ErrorAnswer(FunctionId::kSrvReg, error); };
  if (context.multicast) {
    return Silence{"registration sent to a group"};
  }
  if (const Error error = CheckSender(context, request.url.url); error != Error::kOk) {
    return acknowledge(error);
  }
  if (!request.url.authentication.empty() || !request.authentication.empty()) {
    return acknowledge(Error::kAuthenticationUnknown);
  }
  std::vector<std::string> scopes = ServedScopes(request.scopes, context.settings.scopes);
  if (scopes.empty()) {
    return acknowledge(Error::kScopeNotSupported);
  }
  if (!HasRoomFor(context, request.url.url)) {
    return acknowledge(RefuseHostAtLimit(context));
  }
  if (!context.header.fresh && IsTooSoon(context, request.url.url)) {
    return acknowledge(Error::kRefreshRejected);
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
                                  .source = SourceOf(context),
                                  .host = context.origin.own_host ? "" : context.origin.address,
                                  .host_share = context.settings.bytes_per_host};
  const Error error = context.header.fresh ? context.registry.Register(registration, context.now)
                                           : context.registry.Update(registration, context.now);
  return acknowledge(error == Error::kDaBusyNow ? RefuseHostAtLimit(context) : error);
}

// 1. Never from a group, and only from who may.
// 2. The tags must parse; without any the whole service goes, and with some it may be too soon.
Answer AnswerDeregistration(const RequestContext& context, const SrvDereg& request) {
  const auto acknowledge = [](Error error) { return ErrorAnswer(FunctionId::kSrvDereg, error); };
  if (context.multicast) {
    return Silence{"deregistration sent to a group"};
  }
  if (const Error error = CheckSender(context, request.url.url); error != Error::kOk) {
    return acknowledge(error);
  }
  const Result<std::vector<std::string>> tags = ParseTagList(request.tags);
  if (!tags) {
    return acknowledge(tags.error());
  }
  if (!tags->empty() && IsTooSoon(context, request.url.url)) {
    return acknowledge(Error::kRefreshRejected);
  }
  return acknowledge(
      context.registry.Deregister(request.url.url, SplitStringList(request.scopes), *tags, context.effort));
}

}  // namespace slp
