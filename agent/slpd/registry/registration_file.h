// The file of serialized registrations (RFC 2614 section 2.3): services that are registered for programs that
// know no SLP. Reading has no state, any thread; the registry's for the rest.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "properties/properties.h"
#include "slpd/agent_settings.h"
#include "slpd/registry/registration.h"
#include "slpd/registry/registry.h"
#include "slpd/seconds.h"

namespace slp {

/// The entries of `text` that can be read; what cannot be, and a URL that comes again in the same language,
/// is told in `problems` under the name `file` and left out. An entry without scopes gets `served_scopes`.
std::vector<FileRegistration> ParseRegistrationFile(std::string_view text, const std::string& file,
                                                    const std::vector<std::string>& served_scopes,
                                                    std::vector<PropertyProblem>& problems);

/// What a file holds, read once.
struct RegistrationFile {
  std::string path;  ///< empty: none is named
  std::vector<FileRegistration> entries;
};

/// The file that `settings` name, as ParseRegistrationFile reads it; one that cannot be read is a problem.
RegistrationFile ReadRegistrationFile(const AgentSettings& settings, std::vector<PropertyProblem>& problems);

/// Tells in `problems` when not all of the file may find room in the place of an earlier load; where it tells
/// nothing, LoadRegistrations finds room for each entry.
void CheckRoom(const RegistrationFile& file, const Registry& registry,
               std::vector<PropertyProblem>& problems);

/// Puts the entries of the file in the place of those of an earlier load. A URL that a program has registered
/// itself in the same language is left to it for as long as it has it registered. Returns how many were
/// registered; `problems` tells of the others.
std::size_t LoadRegistrations(const RegistrationFile& file, Registry& registry, Instant now,
                              std::vector<PropertyProblem>& problems);

}  // namespace slp
