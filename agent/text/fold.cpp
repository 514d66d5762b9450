#include "text/fold.h"

#include <optional>

#include "text/scanner.h"

namespace slp {
namespace {

/// Gives the normal form one character after the other.
class FoldedReader {
 public:
  explicit FoldedReader(std::string_view text) : scanner_(text) { scanner_.SkipSpace(); }

  std::optional<char> Next() {
    const auto c = scanner_.Take();
    if (!c || !IsSpace(*c)) {
      return c ? std::optional(ToLower(*c)) : std::nullopt;
    }
    scanner_.SkipSpace();
    return scanner_.AtEnd() ? std::nullopt : std::optional(' ');
  }

  std::size_t position() const { return scanner_.position(); }

 private:
  Scanner scanner_;
};

}  // namespace

std::string Fold(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  FoldedReader reader(text);
  while (const auto c = reader.Next()) {
    folded += *c;
  }
  return folded;
}

bool EqualFolded(std::string_view a, std::string_view b) {
  return std::is_eq(CompareFolded(a, b));
}

std::strong_ordering CompareFolded(std::string_view a, std::string_view b) {
  return MeasureFolded(a, b).order;
}

MeasuredOrder MeasureFolded(std::string_view a, std::string_view b) {
  FoldedReader left(a);
  FoldedReader right(b);
  while (true) {
    const auto x = left.Next();
    const auto y = right.Next();
    if (!x || !y) {
      return {x.has_value() <=> y.has_value(), left.position()};
    }
    if (*x != *y) {
      return {static_cast<unsigned char>(*x) <=> static_cast<unsigned char>(*y), left.position()};
    }
  }
}

std::string FoldInside(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  Scanner scanner(text);
  while (const auto c = scanner.Take()) {
    if (IsSpace(*c)) {
      scanner.SkipSpace();
      folded += ' ';
    } else {
      folded += ToLower(*c);
    }
  }
  return folded;
}

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kSpace);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

}  // namespace slp
