#include "slpd/requests/process_binding.h"

#include <algorithm>

#include "wire/reader.h"

namespace slp {
namespace {

/// Null when there is no such extension.
const Extension* FindExtension(const std::vector<Extension>& extensions, std::uint16_t id) {
  const auto found = std::find_if(extensions.begin(), extensions.end(),
                                  [id](const Extension& extension) { return extension.id == id; });
  return found == extensions.end() ? nullptr : &*found;
}

Result<std::uint32_t> ProcessIdOf(const Extension& extension) {
  Reader reader(extension.payload);
  const std::uint32_t process_id = reader.U32();
  if (reader.failed() || reader.remaining() != 0) {
    return Error::kParseError;
  }
  return process_id;
}

}  // namespace

Result<std::uint32_t> ProcessIdOf(const std::vector<Extension>& extensions) {
  if (const Extension* standard = FindExtension(extensions, kExtensionProcessId)) {
    return ProcessIdOf(*standard);
  }
  if (const Extension* experimental = FindExtension(extensions, kExtensionProcessIdExperimental)) {
    const Result<std::uint32_t> process_id = ProcessIdOf(*experimental);
    return process_id ? process_id : Result<std::uint32_t>(0U);
  }
  return 0U;
}

}  // namespace slp
