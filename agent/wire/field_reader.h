// Reads the fields that message bodies are made of. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "wire/messages.h"
#include "wire/reader.h"

namespace slp {

/// The reading side of Layout(). A body that ends early leaves the field it ends in, and all later ones,
/// empty.
class FieldReader {
 public:
  template <typename T>
  using Of = T;

  /// The bytes of one body. `may_end_early`: a cut reply is whole as soon as it has its error code.
  FieldReader(std::span<const std::uint8_t> body, bool may_end_early)
      : reader_(body), may_end_early_(may_end_early) {}

  void ErrorCode(Error& error);
  void Timestamp(std::uint32_t& seconds) { seconds = reader_.U32(); }
  void Text(std::string& text) { text = reader_.Text(reader_.U16()); }
  void NamingAuthority(std::optional<std::string>& authority);
  void Url(UrlEntry& entry);
  void UrlEntries(std::vector<UrlEntry>& entries);
  void Authentication(std::vector<AuthenticationBlock>& blocks);

  /// All fields were there and nothing behind them, or the body was allowed to end where it does.
  bool Complete() const;

 private:
  Reader reader_;
  bool may_end_early_;
};

}  // namespace slp
