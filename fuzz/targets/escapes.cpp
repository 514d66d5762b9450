// Escaping and the normal form in which strings are compared. The second line is a text that the first is
// compared with.
#include "text/escape.h"

#include "fuzz/fuzz_target.h"
#include "text/attribute_value.h"
#include "text/fold.h"
#include "text/language.h"

namespace slp::fuzz {
namespace {

void CheckEscapes(std::string_view text) {
  const Result<std::string> back = Unescape(Escape(text));
  Require(back && *back == text, "what was escaped comes back");
  const Result<std::string> reserved = UnescapeReserved(text);
  if (reserved) {
    const Result<std::string> plain = Unescape(text);
    Require(plain && *plain == *reserved, "the strict rule reads as the lenient one does");
  }
  if (const auto opaque = DecodeOpaque(text)) {
    Require(!opaque->empty() && text.size() == 3 * (opaque->size() + 1), "an opaque value is all escapes");
  }
}

void CheckFolding(std::string_view a, std::string_view b) {
  const std::string folded = Fold(a);
  Require(folded.size() <= a.size() && Fold(folded) == folded, "folding does not grow and is done once");
  Require(EqualFolded(a, folded), "a text equals its normal form");
  Require(EqualFolded(a, b) == (folded == Fold(b)), "equality is that of the normal forms");
  Require((CompareFolded(a, b) == 0) == EqualFolded(a, b), "order and equality agree");
  Require((CompareFolded(a, b) < 0) == (CompareFolded(b, a) > 0), "order goes both ways");
  Require(FoldInside(a).size() <= a.size() && Trim(a).size() <= a.size(), "nothing grows");
  if (IsValidLanguageTag(a)) {
    Require(LanguageServes(a, a), "a language serves itself");
  }
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  slp::fuzz::CheckEscapes(first);
  slp::fuzz::CheckEscapes(second);
  slp::fuzz::CheckFolding(first, second);
  return 0;
}
