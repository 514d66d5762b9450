// Service types (RFC 2609 section 2.1). The second line is a type that the first is compared with.
#include "text/service_type.h"

#include "fuzz/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using slp::fuzz::Require;
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  const auto type = slp::ParseServiceType(first);
  const auto other = slp::ParseServiceType(second);
  if (type) {
    const auto again = slp::ParseServiceType(type->ToString());
    Require(again && *again == *type, "a type that was written is read as the same");
    Require(slp::TypeMatches(*type, *type), "a type answers for itself");
    const auto abstract_type = slp::ParseServiceType(type->AbstractString());
    Require(abstract_type && slp::TypeMatches(*abstract_type, *type),
            "the abstract type finds the concrete one");
  }
  if (type && other && slp::TypeMatches(*type, *other) && slp::TypeMatches(*other, *type)) {
    Require(type->has_concrete == other->has_concrete, "only equal types answer for each other");
  }
  return 0;
}
