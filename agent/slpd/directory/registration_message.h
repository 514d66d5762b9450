// What a directory agent is told of one own service (RFC 2608 sections 8.3 and 10.6). Pure; the registry's
// thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "slpd/directory/registration_queue.h"
#include "slpd/registry/registry.h"
#include "slpd/seconds.h"
#include "wire/messages.h"

namespace slp {

/// An agent as far as its messages depend on it.
struct RegistrationTarget {
  const std::vector<std::string>& scopes;  ///< that it serves
  Seconds interval;                        ///< it wants no service more often than so; 0: as it comes
};

/// The message for a job, without transaction id; none when there is nothing to be told. With `leaving` all
/// services are gone, whatever the registry holds.
std::optional<Message> RegistrationMessage(const Registry& registry, const RegistrationQueue::Job& job,
                                           const RegistrationTarget& target, bool leaving, Instant now);

}  // namespace slp
