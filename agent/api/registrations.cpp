#include "api/registrations.h"

#include "api/error_mapping.h"
#include "api/local_daemon.h"
#include "api/request_message.h"
#include "net/local_process.h"
#include "text/attributes.h"
#include "text/fold.h"
#include "text/service_type.h"
#include "text/service_url.h"

namespace slp::client {
namespace {

constexpr std::string_view kServiceScheme = "service:";

/// The type to register under, empty when there is none.
std::string TypeOf(const ServiceRegistration& registration, const ServiceUrl& url) {
  const bool service_url = EqualFolded(url.type.substr(0, kServiceScheme.size()), kServiceScheme);
  const std::string& type = service_url || registration.type.empty() ? url.type : registration.type;
  return ParseServiceType(type).ok() ? type : std::string();
}

/// Says which process the registration ends with, in the two ways in which daemons read it.
std::vector<Extension> ProcessBinding() {
  const std::uint32_t id = CurrentProcessId();
  const Bytes payload = {static_cast<std::uint8_t>(id >> 24), static_cast<std::uint8_t>(id >> 16),
                         static_cast<std::uint8_t>(id >> 8), static_cast<std::uint8_t>(id)};
  return {{kExtensionProcessId, payload}, {kExtensionProcessIdExperimental, payload}};
}

SLPError SendDeregistration(const std::string& url, const std::string& tags, const RequestContext& context) {
  return AskLocalDaemon(NewRequest(context, SrvDereg{.scopes = context.settings.scopes,
                                                     .url = {.lifetime = 0, .url = url, .authentication = {}},
                                                     .tags = tags}),
                        context);
}

}  // namespace

SLPError Register(const ServiceRegistration& registration, const RequestContext& context) {
  const Result<ServiceUrl> url = ParseServiceUrl(registration.url);
  if (!url || !AttributeList::Parse(registration.attributes)) {
    return SLP_INVALID_REGISTRATION;
  }
  const std::string type = TypeOf(registration, *url);
  if (type.empty()) {
    return SLP_INVALID_REGISTRATION;
  }
  Message request = NewRequest(
      context,
      SrvReg{.url = {.lifetime = registration.lifetime, .url = registration.url, .authentication = {}},
             .service_type = type,
             .scopes = context.settings.scopes,
             .attributes = registration.attributes,
             .authentication = {}});
  request.header.fresh = registration.fresh;
  if (context.settings.watch_process) {
    request.header.extensions = ProcessBinding();
  }
  return AskLocalDaemon(request, context);
}

SLPError Deregister(const std::string& url, const RequestContext& context) {
  return SendDeregistration(url, {}, context);
}

SLPError DeleteAttributes(const std::string& url, const std::string& tags, const RequestContext& context) {
  return SendDeregistration(url, tags, context);
}

}  // namespace slp::client
