#include "wire/field_writer.h"

#include "wire/wire_constants.h"

namespace slp {

void FieldWriter::Text(const std::string& text) {
  writer_.U16(text.size());
  writer_.Text(text);
}

void FieldWriter::NamingAuthority(const std::optional<std::string>& authority) {
  if (!authority) {
    writer_.U16(kAllNamingAuthorities);
    return;
  }
  if (authority->size() == kAllNamingAuthorities) {
    writer_.Fail();
  }
  Text(*authority);
}

void FieldWriter::Url(const UrlEntry& entry) {
  writer_.U8(0);
  writer_.U16(entry.lifetime);
  Text(entry.url);
  Authentication(entry.authentication);
}

void FieldWriter::UrlEntries(const std::vector<UrlEntry>& entries) {
  writer_.U16(entries.size());
  for (const UrlEntry& entry : entries) {
    Url(entry);
  }
}

void FieldWriter::Authentication(const std::vector<AuthenticationBlock>& blocks) {
  writer_.U8(blocks.size());
  for (const AuthenticationBlock& block : blocks) {
    writer_.U16(block.descriptor);
    writer_.U16(kAuthenticationHeadSize + block.content.size());
    writer_.Block(block.content);
  }
}

}  // namespace slp
