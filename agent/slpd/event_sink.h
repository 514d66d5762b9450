// What the daemon's logic tells of itself, for trace lines and logs. Called by the thread that drives the
// logic, from inside its calls: an implementation must not call back into registry or handler, except for
// reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "slpd/registry/registration.h"
#include "slpd/request_origin.h"
#include "wire/messages.h"

namespace slp {

enum class RegistrationEvent {
  kRegistered,         ///< was not there before
  kRenewed,            ///< a fresh registration took the place of an earlier one in the same language
  kUpdated,            ///< attributes were added or changed (RFC 2608 section 9.3)
  kAttributesRemoved,  ///< a deregistration that named tags
  kDeregistered,
  kExpired,
  kProcessEnded,
  kFileReplaced,  ///< the registration file was read anew
};

/// "registered", "renewed", ... for a line that a person reads.
std::string_view ToString(RegistrationEvent event);

class EventSink {
 public:
  virtual ~EventSink() = default;

  /// The registration as it is now, or as it was when it left.
  virtual void OnRegistration(RegistrationEvent event, const RegistrationView& registration) = 0;

  /// A message that was understood, before it is acted upon.
  virtual void OnMessageIn(const Message& message, const RequestOrigin& origin) = 0;

  /// The answer; `size` bytes are what is sent.
  virtual void OnMessageOut(const Message& message, const RequestOrigin& origin, std::size_t size) = 0;

  /// A message that gets no answer, and why.
  virtual void OnDropped(std::string_view reason, std::size_t size, const RequestOrigin& origin) = 0;

  /// A registration asks to be bound to a process that is not to be seen from here; it lives by its lifetime
  /// alone.
  virtual void OnProcessNotWatched(std::uint32_t process_id, std::string_view url) = 0;

  /// Another host's registration is refused: it has registered as much as one host may.
  virtual void OnHostAtLimit(std::string_view host) = 0;

  /// A request is refused while it is answered: it takes more comparisons than one may. It has looked at
  /// `services` until then.
  virtual void OnTooMuchToCompare(const RequestOrigin& origin, std::uint64_t services) = 0;
};

}  // namespace slp
