// The file of serialized registrations (RFC 2614 section 2.3): each entry that can be read can be registered.
#include "slpd/registry/registration_file.h"

#include "fuzz/fuzz_target.h"
#include "slpd/registry/registration_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using slp::fuzz::Require;
  std::vector<slp::PropertyProblem> problems;
  const auto entries =
      slp::ParseRegistrationFile(slp::fuzz::TextOf(data, size), "slp.reg", {"DEFAULT", "TAMRO"}, problems);
  for (const slp::FileRegistration& entry : entries) {
    Require(entry.line > 0, "an entry has a line");
    Require(slp::CheckRegistration(entry.registration).ok(), "an entry can be registered");
  }
  for (const slp::PropertyProblem& problem : problems) {
    Require(problem.line > 0 && !problem.text.empty(), "a problem says where and what");
  }
  return 0;
}
