#include "agent/slpd/daemon_logic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace slp {

void RecordedEvents::OnRegistration(RegistrationEvent event, const RegistrationView& registration) {
  lines_.push_back(std::string(ToString(event)) + ' ' + std::string(registration.url) + ' ' +
                   std::string(registration.language));
}

void RecordedEvents::OnMessageIn(const Message& message, const RequestOrigin&) {
  lines_.push_back("in " + std::to_string(static_cast<int>(message.function())));
}

void RecordedEvents::OnMessageOut(const Message& message, const RequestOrigin&, std::size_t) {
  lines_.push_back("out " + std::to_string(static_cast<int>(message.function())));
}

void RecordedEvents::OnDropped(std::string_view reason, std::size_t, const RequestOrigin&) {
  lines_.push_back("dropped " + std::string(reason));
}

void RecordedEvents::OnProcessNotWatched(std::uint32_t process_id, std::string_view url) {
  lines_.push_back("not watched " + std::to_string(process_id) + ' ' + std::string(url));
}

void RecordedEvents::OnHostAtLimit(std::string_view host) {
  lines_.push_back("at limit " + std::string(host));
}

void RecordedEvents::OnTooMuchToCompare(const RequestOrigin& origin, std::uint64_t services) {
  lines_.push_back("too much to compare " + origin.address + ' ' + std::to_string(services));
}

std::vector<std::string> RecordedEvents::Take() {
  return std::exchange(lines_, {});
}

std::ostream& operator<<(std::ostream& out, const Found& found) {
  return out << found.url << ' ' << found.lifetime;
}

Registration MakeRegistration(std::string url, std::string type, std::string attributes) {
  Registration registration;
  registration.url = std::move(url);
  registration.service_type = std::move(type);
  registration.scopes = {"DEFAULT"};
  registration.attributes = std::move(attributes);
  registration.lifetime = 3600;
  return registration;
}

ServiceQuery MakeQuery(std::string_view type, std::string_view predicate, std::vector<std::string> scopes,
                       std::string language) {
  Result<ServiceType> parsed_type = ParseServiceType(type);
  Result<Predicate> parsed_predicate = Predicate::Parse(predicate);
  EXPECT_TRUE(parsed_type) << type;
  EXPECT_TRUE(parsed_predicate) << predicate;
  return {parsed_type ? *parsed_type : ServiceType(), std::move(scopes), std::move(language),
          parsed_predicate ? *parsed_predicate : Predicate()};
}

std::vector<Found> FindAll(const Registry& registry, const ServiceQuery& query, Instant now) {
  std::vector<Found> found;
  const Error error =
      registry.FindServices(query, now, Unlimited(), [&found](std::string_view url, std::uint16_t lifetime) {
        found.push_back({std::string(url), lifetime});
        return true;
      });
  EXPECT_EQ(error, Error::kOk);
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) { return a.url < b.url; });
  return found;
}

std::vector<std::string> FindUrls(const Registry& registry, const ServiceQuery& query, Instant now) {
  std::vector<std::string> urls;
  for (Found& found : FindAll(registry, query, now)) {
    urls.push_back(std::move(found.url));
  }
  return urls;
}

AgentSettings TestSettings() {
  AgentSettings settings;
  settings.scopes = {"DEFAULT", "TAMRO"};
  settings.own_addresses = {"10.0.0.1", "127.0.0.1"};
  return settings;
}

DaemonLogic::DaemonLogic()
    : handler(registry, TestSettings(), events, [this](std::uint32_t process_id) {
        return std::find(missing_processes.begin(), missing_processes.end(), process_id) ==
               missing_processes.end();
      }) {}

std::optional<Message> DaemonLogic::Ask(const Message& message, const RequestOrigin& origin) {
  const Result<Bytes> request = Encode(message);
  EXPECT_TRUE(request);
  return request ? Send(*request, origin) : std::nullopt;
}

std::optional<Message> DaemonLogic::Ask(Body body, const RequestOrigin& origin) {
  return Ask(MakeMessage(std::move(body)), origin);
}

std::optional<Message> DaemonLogic::Send(const Bytes& request, const RequestOrigin& origin) {
  const std::optional<Bytes> reply = handler.Handle(request, origin, now);
  if (!reply) {
    return std::nullopt;
  }
  Result<Message> decoded = Decode(*reply);
  EXPECT_TRUE(decoded);
  return decoded ? std::optional(*decoded) : std::nullopt;
}

Error DaemonLogic::Register(const SrvReg& request, bool fresh, std::string language,
                            std::vector<Extension> extensions) {
  Message message = MakeMessage(request, std::move(language));
  message.header.fresh = fresh;
  message.header.extensions = std::move(extensions);
  const std::optional<Message> reply = Ask(message, kOwnHost);
  const SrvAck* acknowledgment = reply ? std::get_if<SrvAck>(&reply->body) : nullptr;
  EXPECT_NE(acknowledgment, nullptr);
  return acknowledgment == nullptr ? Error::kInternalError : acknowledgment->error;
}

Message MakeMessage(Body body, std::string language) {
  Message message;
  message.header.xid = 4711;
  message.header.language = std::move(language);
  message.body = std::move(body);
  return message;
}

SrvReg MakeSrvReg(std::string url, std::string type, std::string attributes, std::string scopes) {
  SrvReg request;
  request.url = {3600, std::move(url), {}};
  request.service_type = std::move(type);
  request.scopes = std::move(scopes);
  request.attributes = std::move(attributes);
  return request;
}

SrvRqst MakeSrvRqst(std::string type, std::string predicate, std::string scopes) {
  SrvRqst request;
  request.service_type = std::move(type);
  request.scopes = std::move(scopes);
  request.predicate = std::move(predicate);
  return request;
}

AttrRqst MakeAttrRqst(std::string url, std::string tags, std::string scopes) {
  AttrRqst request;
  request.url = std::move(url);
  request.scopes = std::move(scopes);
  request.tags = std::move(tags);
  return request;
}

std::optional<Message> ReplyOf(Body body, std::string language) {
  return MakeMessage(std::move(body), std::move(language));
}

}  // namespace slp
