// Writes the fields that message bodies are made of. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wire/messages.h"
#include "wire/writer.h"

namespace slp {

/// The writing side of Layout(). What no field can say fails the writer.
class FieldWriter {
 public:
  template <typename T>
  using Of = const T;

  /// Appends to `writer`, which must outlive this.
  explicit FieldWriter(Writer& writer) : writer_(writer) {}

  void ErrorCode(Error error) { writer_.U16(static_cast<std::uint16_t>(error)); }
  void Timestamp(std::uint32_t seconds) { writer_.U32(seconds); }
  void Text(const std::string& text);
  void NamingAuthority(const std::optional<std::string>& authority);
  void Url(const UrlEntry& entry);
  void UrlEntries(const std::vector<UrlEntry>& entries);
  void Authentication(const std::vector<AuthenticationBlock>& blocks);

 private:
  Writer& writer_;
};

}  // namespace slp
