#include "slpd/server/trace.h"

#include <string>

#include "slpd/server/message_text.h"

namespace slp {

void Trace::Configure(const AgentSettings& settings) {
  registrations_ = settings.trace_registrations;
  messages_ = settings.trace_messages;
  drops_ = settings.trace_drops;
}

void Trace::OnRegistration(RegistrationEvent event, const RegistrationView& registration) {
  if (registrations_) {
    log_.Write(LogKind::kRegistration, std::string(ToString(event)) + " " + Describe(registration));
  }
}

void Trace::OnMessageIn(const Message& message, const RequestOrigin& origin) {
  if (messages_) {
    log_.Write(LogKind::kMessage, "from " + Describe(origin) + ": " + Describe(message));
  }
}

void Trace::OnMessageOut(const Message& message, const RequestOrigin& origin, std::size_t size) {
  if (messages_) {
    log_.Write(LogKind::kMessage,
               "to " + Describe(origin) + ", " + std::to_string(size) + " bytes: " + Describe(message));
  }
}

void Trace::OnDropped(std::string_view reason, std::size_t size, const RequestOrigin& origin) {
  if (drops_) {
    log_.Write(LogKind::kDrop,
               "from " + Describe(origin) + ", " + std::to_string(size) + " bytes: " + std::string(reason));
  }
}

void Trace::OnProcessNotWatched(std::uint32_t process_id, std::string_view url) {
  log_.Write(LogKind::kProblem, "process " + std::to_string(process_id) + " is not to be seen from here: " +
                                    std::string(url) + " stays until its lifetime ends");
}

void Trace::OnHostAtLimit(std::string_view host) {
  log_.Write(LogKind::kRefusal, std::string(host) +
                                    " has registered as much as one host may, more is refused: "
                                    "net.slp.maxRegistrationsPerHost, net.slp.maxBytesPerHost");
}

void Trace::OnTooMuchToCompare(const RequestOrigin& origin, std::uint64_t services) {
  log_.Write(LogKind::kRefusal,
             "a request from " + Describe(origin) +
                 " takes more comparisons than one may, it is refused after " + std::to_string(services) +
                 " services: fewer terms or wildcards, or a term that the index narrows the search by, "
                 "(tag=value) or (tag=beginning*), make it possible");
}

}  // namespace slp
