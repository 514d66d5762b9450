// Turns what the daemon's logic tells of itself into log lines, as far as the net.slp.trace... settings ask
// for it. On the thread that runs the event loop.
#pragma once

#include "slpd/agent_settings.h"
#include "slpd/event_sink.h"
#include "slpd/server/log.h"

namespace slp {

class Trace : public EventSink {
 public:
  /// `log` outlives the trace.
  explicit Trace(Log& log) : log_(log) {}

  void Configure(const AgentSettings& settings);

  void OnRegistration(RegistrationEvent event, const RegistrationView& registration) override;
  void OnMessageIn(const Message& message, const RequestOrigin& origin) override;
  void OnMessageOut(const Message& message, const RequestOrigin& origin, std::size_t size) override;
  void OnDropped(std::string_view reason, std::size_t size, const RequestOrigin& origin) override;
  void OnProcessNotWatched(std::uint32_t process_id, std::string_view url) override;
  void OnHostAtLimit(std::string_view host) override;
  void OnTooMuchToCompare(const RequestOrigin& origin, std::uint64_t services) override;

 private:
  Log& log_;
  bool registrations_ = false;
  bool messages_ = false;
  bool drops_ = false;
};

}  // namespace slp
