// Search predicates (RFC 2608 section 8.1) over the attribute list in the second line: the registry's indexes
// must find exactly what a comparison with each service finds.
#include "text/predicate.h"

#include <limits>
#include <string>

#include "fuzz/fuzz_target.h"
#include "fuzz/no_events.h"
#include "slpd/registry/registry.h"

namespace slp::fuzz {
namespace {

/// Services that most predicates find some of.
constexpr std::string_view kAttributes[] = {"", "(a=1)", "(a=1,2),(b=x y),c", "(a=-5),(b=true)",
                                            "(b=\\FF\\01),c"};

void CheckSearch(const Predicate& predicate, const AttributeList& own, std::string_view own_text) {
  NoEvents events;
  Registry registry(events);
  Effort effort(std::numeric_limits<std::size_t>::max());
  std::size_t expected = 0;
  const auto add = [&](std::string_view attributes, const AttributeList& list) {
    Registration registration;
    registration.url = "service:x://h/" + std::to_string(registry.size());
    registration.service_type = "service:x";
    registration.scopes = {"DEFAULT"};
    registration.attributes = attributes;
    registration.lifetime = 60;
    const bool stored = registry.Register(registration, Instant(0)) == Error::kOk;
    expected += stored && predicate.Matches(list, effort) ? 1 : 0;
  };
  for (const std::string_view attributes : kAttributes) {
    add(attributes, *AttributeList::Parse(attributes));
  }
  add(own_text, own);

  std::size_t found = 0;
  const Error error =
      registry.FindServices({*ParseServiceType("service:x"), {"DEFAULT"}, "en", predicate}, Instant(0),
                            effort, [&found](std::string_view, std::uint16_t) { return ++found != 0; });
  Require(error == Error::kOk && found == expected, "the indexes find what comparing finds");
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  const auto predicate = slp::Predicate::Parse(first);
  const auto attributes = slp::AttributeList::Parse(second);
  if (predicate && attributes) {
    slp::fuzz::CheckSearch(*predicate, *attributes, second);
  }
  return 0;
}
