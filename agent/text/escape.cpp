#include "text/escape.h"

#include <utility>

#include "text/scanner.h"

namespace slp {
namespace {

template <typename Allowed>
Result<std::string> UnescapeWhere(std::string_view text, Allowed allowed) {
  std::string plain;
  plain.reserve(text.size());
  Scanner scanner(text);
  while (!scanner.AtEnd()) {
    plain += scanner.TakeUntil([](char c) { return c == '\\'; });
    if (scanner.AtEnd()) {
      break;
    }
    const auto byte = scanner.TakeEscape();
    if (!byte || !allowed(static_cast<char>(*byte))) {
      return Error::kParseError;
    }
    plain += static_cast<char>(*byte);
  }
  return plain;
}

}  // namespace

std::string Escape(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    if (IsReserved(c)) {
      const auto byte = static_cast<unsigned char>(c);
      escaped += '\\';
      escaped += kDigits[byte / 16];
      escaped += kDigits[byte % 16];
    } else {
      escaped += c;
    }
  }
  return escaped;
}

Result<std::string> Unescape(std::string_view text) {
  if (DecodeOpaque(text)) {
    return std::string(text);
  }
  return UnescapeWhere(text, [](char) { return true; });
}

Result<std::string> UnescapeReserved(std::string_view text, std::string_view others) {
  return UnescapeWhere(text, [others](char c) { return IsReserved(c) || IsOneOf(c, others); });
}

std::optional<std::vector<unsigned char>> DecodeOpaque(std::string_view text) {
  Scanner scanner(text);
  if (scanner.TakeEscape() != 0xFF || scanner.AtEnd()) {
    return std::nullopt;
  }
  std::vector<unsigned char> bytes;
  bytes.reserve(scanner.Rest().size() / 3);
  while (const auto byte = scanner.TakeEscape()) {
    bytes.push_back(*byte);
  }
  return scanner.AtEnd() ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace slp
