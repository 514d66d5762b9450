#include "wire/field_reader.h"

#include <utility>

#include "wire/wire_constants.h"

namespace slp {

void FieldReader::ErrorCode(Error& error) {
  error = static_cast<Error>(reader_.U16());
  if (reader_.failed()) {
    may_end_early_ = false;
  } else if (error != Error::kOk) {
    // RFC 2608 section 7: behind an error nothing is to be expected.
    may_end_early_ = true;
  }
}

void FieldReader::NamingAuthority(std::optional<std::string>& authority) {
  const std::uint16_t length = reader_.U16();
  if (length == kAllNamingAuthorities) {
    authority.reset();
  } else {
    authority = reader_.Text(length);
  }
}

void FieldReader::Url(UrlEntry& entry) {
  reader_.U8();  // reserved; RFC 2608 section 4.3 gives it no meaning
  entry.lifetime = reader_.U16();
  Text(entry.url);
  Authentication(entry.authentication);
}

void FieldReader::UrlEntries(std::vector<UrlEntry>& entries) {
  // The count is a stranger's word: memory is taken only as entries turn up.
  for (std::uint16_t left = reader_.U16(); left > 0; --left) {
    UrlEntry entry;
    Url(entry);
    if (reader_.failed()) {
      return;
    }
    entries.push_back(std::move(entry));
  }
}

void FieldReader::Authentication(std::vector<AuthenticationBlock>& blocks) {
  for (std::uint8_t left = reader_.U8(); left > 0; --left) {
    AuthenticationBlock block;
    block.descriptor = reader_.U16();
    const std::uint16_t length = reader_.U16();
    if (length < kAuthenticationHeadSize) {
      reader_.Fail();
      return;
    }
    block.content = reader_.Block(length - kAuthenticationHeadSize);
    if (reader_.failed()) {
      return;
    }
    blocks.push_back(std::move(block));
  }
}

bool FieldReader::Complete() const {
  return reader_.failed() ? may_end_early_ : reader_.remaining() == 0;
}

}  // namespace slp
