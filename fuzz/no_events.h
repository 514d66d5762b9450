// A sink for what the daemon's logic tells of itself. One thread at a time.
#pragma once

#include "slpd/event_sink.h"

namespace slp::fuzz {

class NoEvents : public EventSink {
 public:
  void OnRegistration(RegistrationEvent, const RegistrationView&) override {}
  void OnMessageIn(const Message&, const RequestOrigin&) override {}
  void OnMessageOut(const Message&, const RequestOrigin&, std::size_t) override {}
  void OnDropped(std::string_view, std::size_t, const RequestOrigin&) override {}
  void OnProcessNotWatched(std::uint32_t, std::string_view) override {}
  void OnHostAtLimit(std::string_view) override {}
  void OnTooMuchToCompare(const RequestOrigin&, std::uint64_t) override {}
};

}  // namespace slp::fuzz
