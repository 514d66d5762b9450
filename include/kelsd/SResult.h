// The outcome of every fallible operation of the library: a code, a detail and a debug trail.
#pragma once

#include <string>

#include "kelsd/Export.h"

namespace kelsd {

/// Outcome of an operation. A plain value: copyable, owned by the caller, used by one thread at a time.
///
/// The description of a code is fixed and derived from the code; the detail names what the operation was
/// working on; the debug trail names the functions that the failure passed through, outermost first,
/// separated by blanks. No operation of the library throws: everything that can go wrong is told here. (For
/// lack of memory a record itself may throw: see Export.h.)
struct KELSD_EXPORT SResult {
 public:
  /// Outcome codes. The numbers are part of the interface; 44 is reserved and never used.
  enum EError : int {
    ERR_SUCCESS = 0,
    ERR_UNKNOWN = 1,
    ERR_OUT_OF_MEMORY = 2,
    ERR_BASIC_API = 3,
    ERR_INVALID_PARAMETER = 4,
    ERR_HANDLE_IN_USE = 5,
    ERR_NOT_IMPLEMENTED = 6,
    ERR_LANGUAGE_NOT_SUPPORTED = 7,
    ERR_AUTHENTICATION_ABSENT = 8,
    ERR_AUTHENTICATION_FAILED = 9,
    ERR_PARSE_ERROR = 10,
    ERR_SCOPE_NOT_SUPPORTED = 11,
    ERR_NETWORK_INIT_FAILED = 12,
    ERR_NETWORK_TIMED_OUT = 13,
    ERR_NETWORK_ERROR = 14,
    ERR_BUFFER_OVERFLOW = 15,
    ERR_URL_EMPTY = 16,
    ERR_URL_INVALID = 17,
    ERR_URL_ADDRESS_EMPTY = 18,
    ERR_TAG_EMPTY = 19,
    ERR_TAG_BAD_CHARACTERS = 20,
    ERR_TAG_NOT_UNIQUE = 21,
    ERR_VALUE_BAD_CHARACTERS = 22,
    ERR_SCOPE_EMPTY = 23,
    ERR_SCOPE_BAD_CHARACTERS = 24,
    ERR_ASYNC_NOT_SUPPORTED = 25,
    ERR_BASIC_NETWORK_INIT_FAILED = 26,
    ERR_INVALID_REGISTRATION = 27,
    ERR_INVALID_DEREGISTRATION = 28,
    ERR_SCM_ACCESS = 29,
    ERR_SLPD_OPEN = 30,
    ERR_SLPD_QUERY = 31,
    ERR_SLPD_ALREADY_RUNNING = 32,
    ERR_SLPD_WAIT_TIMEOUT = 33,
    ERR_SLPD_START = 34,
    ERR_SLPD_STOP = 35,
    ERR_SLPD_PROCESS_OPEN = 36,
    ERR_CONF_OPEN = 37,
    ERR_CONF_LOAD = 38,
    ERR_CONF_WRITE = 39,
    ERR_CONF_DIR_CREATE = 40,
    ERR_CONF_CREATE = 41,
    ERR_ENV_NOT_SET = 42,
    ERR_RESTART_REQUIRED = 43,
    ERR_PROPERTY_GET = 45,
    ERR_PROPERTY_PARSE = 46,
    ERR_NOT_INITIALIZED = 47,
  };

  /// A failure with code ERR_UNKNOWN: a result that nobody set is never a success.
  SResult();
  SResult(const EError& code);
  SResult(const EError& code, const std::string& detail);
  SResult(const EError& code, const std::string& detail, std::string debug);

  EError GetErrorCode() const;
  /// What the operation was working on; empty when there is nothing to add.
  std::string GetErrorDetail() const;
  /// The qualified names of the functions that the failure passed through, outermost first.
  std::string GetErrorDebug() const;
  /// The fixed text of the code.
  std::string GetErrorDescription() const;
  /// The fixed text of `code`; "Unknown error." for a value without a text of its own.
  static std::string GetErrorDescription(EError code);

  bool IsOk() const;
  bool IsNotOk() const;

  /// Comparisons look at the codes only.
  bool operator==(const SResult& other) const;
  bool operator!=(const SResult& other) const;
  bool operator==(const EError& code) const;
  bool operator!=(const EError& code) const;

  /// One line: description, code, detail and debug trail.
  std::string ToString() const;

  /// A copy whose debug trail begins with `prefix` and `separator`.
  SResult PrependErrorDebug(const std::string& prefix, std::string separator) const;

 private:
  EError code_;
  std::string detail_;
  std::string debug_;
};

KELSD_EXPORT bool operator==(const SResult::EError& code, const SResult& result);
KELSD_EXPORT bool operator!=(const SResult::EError& code, const SResult& result);

}  // namespace kelsd
