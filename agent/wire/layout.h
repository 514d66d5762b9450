// The bodies of the eleven messages, field by field in the order of the RFC's diagrams. One description
// serves both directions: `Io` is FieldReader, which fills the message, or FieldWriter, which only looks at
// it (Io::Of<T> is T or const T). Stateless; any thread.
#pragma once

#include "wire/messages.h"

namespace slp {

/// RFC 2608 section 8.1.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvRqst>& message) {
  io.Text(message.previous_responders);
  io.Text(message.service_type);
  io.Text(message.scopes);
  io.Text(message.predicate);
  io.Text(message.spi);
}

/// RFC 2608 section 8.2.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvRply>& message) {
  io.ErrorCode(message.error);
  io.UrlEntries(message.urls);
}

/// RFC 2608 section 8.3.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvReg>& message) {
  io.Url(message.url);
  io.Text(message.service_type);
  io.Text(message.scopes);
  io.Text(message.attributes);
  io.Authentication(message.authentication);
}

/// RFC 2608 section 10.6.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvDereg>& message) {
  io.Text(message.scopes);
  io.Url(message.url);
  io.Text(message.tags);
}

/// RFC 2608 section 8.4.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvAck>& message) {
  io.ErrorCode(message.error);
}

/// RFC 2608 section 10.3.
template <typename Io>
void Layout(Io& io, typename Io::template Of<AttrRqst>& message) {
  io.Text(message.previous_responders);
  io.Text(message.url);
  io.Text(message.scopes);
  io.Text(message.tags);
  io.Text(message.spi);
}

/// RFC 2608 section 10.4.
template <typename Io>
void Layout(Io& io, typename Io::template Of<AttrRply>& message) {
  io.ErrorCode(message.error);
  io.Text(message.attributes);
  io.Authentication(message.authentication);
}

/// RFC 2608 section 8.5.
template <typename Io>
void Layout(Io& io, typename Io::template Of<DaAdvert>& message) {
  io.ErrorCode(message.error);
  io.Timestamp(message.boot_timestamp);
  io.Text(message.url);
  io.Text(message.scopes);
  io.Text(message.attributes);
  io.Text(message.spi);
  io.Authentication(message.authentication);
}

/// RFC 2608 section 10.1.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvTypeRqst>& message) {
  io.Text(message.previous_responders);
  io.NamingAuthority(message.naming_authority);
  io.Text(message.scopes);
}

/// RFC 2608 section 10.2.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SrvTypeRply>& message) {
  io.ErrorCode(message.error);
  io.Text(message.types);
}

/// RFC 2608 section 8.6.
template <typename Io>
void Layout(Io& io, typename Io::template Of<SaAdvert>& message) {
  io.Text(message.url);
  io.Text(message.scopes);
  io.Text(message.attributes);
  io.Authentication(message.authentication);
}

}  // namespace slp
