// The SLPv2 messages as values (RFC 2608 section 8 to 11). Texts stand as they were on the wire: escaped,
// untrimmed. Values; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/error.h"

namespace slp {

using Bytes = std::vector<std::uint8_t>;

enum class FunctionId : std::uint8_t {
  kSrvRqst = 1,
  kSrvRply = 2,
  kSrvReg = 3,
  kSrvDereg = 4,
  kSrvAck = 5,
  kAttrRqst = 6,
  kAttrRply = 7,
  kDaAdvert = 8,
  kSrvTypeRqst = 9,
  kSrvTypeRply = 10,
  kSaAdvert = 11,
};

/// Process-bound registration (id 0x4001, and 0x9799 as deployed daemons read it): payload is the process id.
inline constexpr std::uint16_t kExtensionProcessId = 0x4001;
inline constexpr std::uint16_t kExtensionProcessIdExperimental = 0x9799;

/// RFC 2608 section 9.1. The payload is opaque here.
struct Extension {
  std::uint16_t id = 0;
  Bytes payload;
  bool operator==(const Extension&) const = default;
};

/// What every message begins with (RFC 2608 section 8). Length, function id and extension offset follow from
/// the message and are not kept.
struct Header {
  bool overflow = false;           ///< the reply was cut; ask again over TCP
  bool fresh = false;              ///< SrvReg: replaces instead of updating
  bool request_multicast = false;  ///< the request was sent to a group
  std::uint16_t xid = 0;
  std::string language = "en";
  std::vector<Extension> extensions;
  bool operator==(const Header&) const = default;
};

/// RFC 2608 section 9.2; read so that a message that carries one is understood, never produced.
struct AuthenticationBlock {
  std::uint16_t descriptor = 0;
  Bytes content;  ///< everything behind the block's length
  bool operator==(const AuthenticationBlock&) const = default;
};

/// RFC 2608 section 4.3.
struct UrlEntry {
  std::uint16_t lifetime = 0;  ///< seconds
  std::string url;
  std::vector<AuthenticationBlock> authentication;
  bool operator==(const UrlEntry&) const = default;
};

struct SrvRqst {
  std::string previous_responders;
  std::string service_type;
  std::string scopes;
  std::string predicate;
  std::string spi;
  bool operator==(const SrvRqst&) const = default;
};

struct SrvRply {
  Error error = Error::kOk;
  std::vector<UrlEntry> urls;
  bool operator==(const SrvRply&) const = default;
};

struct SrvReg {
  UrlEntry url;
  std::string service_type;
  std::string scopes;
  std::string attributes;
  std::vector<AuthenticationBlock> authentication;
  bool operator==(const SrvReg&) const = default;
};

struct SrvDereg {
  std::string scopes;
  UrlEntry url;
  std::string tags;
  bool operator==(const SrvDereg&) const = default;
};

struct SrvAck {
  Error error = Error::kOk;
  bool operator==(const SrvAck&) const = default;
};

struct AttrRqst {
  std::string previous_responders;
  std::string url;  ///< a URL or a service type
  std::string scopes;
  std::string tags;
  std::string spi;
  bool operator==(const AttrRqst&) const = default;
};

struct AttrRply {
  Error error = Error::kOk;
  std::string attributes;
  std::vector<AuthenticationBlock> authentication;
  bool operator==(const AttrRply&) const = default;
};

struct DaAdvert {
  Error error = Error::kOk;
  std::uint32_t boot_timestamp = 0;  ///< seconds since 1970; 0: the directory agent is going down
  std::string url;
  std::string scopes;
  std::string attributes;
  std::string spi;
  std::vector<AuthenticationBlock> authentication;
  bool operator==(const DaAdvert&) const = default;
};

struct SrvTypeRqst {
  std::string previous_responders;
  std::optional<std::string> naming_authority;  ///< none: all authorities; "": IANA
  std::string scopes;
  bool operator==(const SrvTypeRqst&) const = default;
};

struct SrvTypeRply {
  Error error = Error::kOk;
  std::string types;
  bool operator==(const SrvTypeRply&) const = default;
};

struct SaAdvert {
  std::string url;
  std::string scopes;
  std::string attributes;
  std::vector<AuthenticationBlock> authentication;
  bool operator==(const SaAdvert&) const = default;
};

using Body = std::variant<SrvRqst, SrvRply, SrvReg, SrvDereg, SrvAck, AttrRqst, AttrRply, DaAdvert,
                          SrvTypeRqst, SrvTypeRply, SaAdvert>;

struct Message {
  Header header;
  Body body;
  FunctionId function() const { return static_cast<FunctionId>(body.index() + 1); }
  bool operator==(const Message&) const = default;
};

}  // namespace slp
