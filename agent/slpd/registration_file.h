// The file of serialized registrations (RFC 2614 section 2.3): services that are registered for programs that
// know no SLP. Pure functions but for LoadRegistrationFile, which reads the file; any thread, the registry's
// for loading.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "properties/properties.h"
#include "slpd/agent_settings.h"
#include "slpd/registration.h"
#include "slpd/registry.h"
#include "slpd/seconds.h"

namespace slp {

/// One entry of the file and the line where it begins.
struct FileRegistration {
  int line = 0;
  Registration registration;
};

/// The entries of `text` that can be read; what cannot be is told in `problems` under the name `file` and
/// left out. An entry without scopes gets `served_scopes`.
std::vector<FileRegistration> ParseRegistrationFile(std::string_view text, const std::string& file,
                                                    const std::vector<std::string>& served_scopes,
                                                    std::vector<PropertyProblem>& problems);

/// Puts the entries of the file that `settings` name in the place of those of an earlier load. A URL that a
/// program has registered itself in the same language is left to it for as long as it has it registered. A
/// file that cannot be read is a problem and changes nothing; when none is named the earlier entries go.
/// Returns how many were registered.
std::size_t LoadRegistrationFile(const AgentSettings& settings, Registry& registry, Instant now,
                                 std::vector<PropertyProblem>& problems);

}  // namespace slp
