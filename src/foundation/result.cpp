// The result record: its texts, comparisons and print form.
#include <algorithm>
#include <iterator>
#include <utility>

#include "kelsd/SResult.h"

namespace kelsd {
namespace {

struct Description {
  SResult::EError code;
  const char* text;
};

constexpr const char* kUnknownError = "Unknown error.";

// ERR_UNKNOWN has no row, nor has the reserved number 44: they read as any other number without a text.
constexpr Description kDescriptions[] = {
    {SResult::ERR_SUCCESS, "Success. No error occurred."},
    {SResult::ERR_OUT_OF_MEMORY,
     "Out of memory. Operation aborted because it failed to allocate enough memory."},
    {SResult::ERR_BASIC_API,
     "Basic API error. The operation could not recover. Occurs when a system call or library fails."},
    {SResult::ERR_INVALID_PARAMETER, "Invalid parameter(s) passed to operation."},
    {SResult::ERR_HANDLE_IN_USE, "Concurrent use of the same SLP handle at a time."},
    {SResult::ERR_NOT_IMPLEMENTED, "Unimplemented feature is used."},
    {SResult::ERR_LANGUAGE_NOT_SUPPORTED,
     "No service/attribute information is available for the requested language but at least one DA or SA "
     "indicated that it might have information for another language."},
    {SResult::ERR_AUTHENTICATION_ABSENT,
     "UA or SA failed to send an authenticator for requests or registrations."},
    {SResult::ERR_AUTHENTICATION_FAILED, "Authentication on an SLP message failed."},
    {SResult::ERR_PARSE_ERROR,
     "SLP message was rejected by a remote SLP agent. No information was retrieved, and at least one SA or "
     "DA indicated a protocol error. Data may be malformed/damaged in transit."},
    {SResult::ERR_SCOPE_NOT_SUPPORTED, "Scope included in a request is not supported by the DA or SA."},
    {SResult::ERR_NETWORK_INIT_FAILED,
     "Network initialization failed. SA or DA can not be contacted (check that slpd service is running)."},
    {SResult::ERR_NETWORK_TIMED_OUT, "Unicast request timed out."},
    {SResult::ERR_NETWORK_ERROR, "Failure of networking during normal operations."},
    {SResult::ERR_BUFFER_OVERFLOW, "Outgoing request overflowed the maximum network MTU size."},
    {SResult::ERR_URL_EMPTY, "The service URL is empty."},
    {SResult::ERR_URL_INVALID, "The service URL is invalid/malformed."},
    {SResult::ERR_URL_ADDRESS_EMPTY, "The service URL address specification is empty."},
    {SResult::ERR_TAG_EMPTY, "The attribute tag is empty."},
    {SResult::ERR_TAG_BAD_CHARACTERS,
     R"(The attribute tag contains bad characters. Any of "_*(),\!<=>~ \t\n\v\f\r" or control characters )"
     "0x00-0x1F, 0x7F."},
    {SResult::ERR_TAG_NOT_UNIQUE, "The attribute tag is not unique (case insensitive comparision)."},
    {SResult::ERR_VALUE_BAD_CHARACTERS, "The attribute value contains not allowed characters."},
    {SResult::ERR_SCOPE_EMPTY, " The provided scope is empty."},
    {SResult::ERR_SCOPE_BAD_CHARACTERS,
     R"(The provided scope contains bad characters. Any of "(),\!<=>~;*+ \t\n\v\f\r" or control characters )"
     "0x00-0x1F, 0x7F."},
    {SResult::ERR_ASYNC_NOT_SUPPORTED,
     "Asynchronous operation not supported (memory constraints, lack of threading support)."},
    {SResult::ERR_BASIC_NETWORK_INIT_FAILED, "Basic network initialization failed."},
    {SResult::ERR_INVALID_REGISTRATION,
     "Malformed service URL or attributes. Registration was rejected by DA/all DAs."},
    {SResult::ERR_INVALID_DEREGISTRATION,
     "Malformed service URL or Service URL being deregistered is not registered (was never registered or "
     "lifetime has expired) or an attempt is made to deregister a service that was registered on a different "
     "host."},
    {SResult::ERR_SCM_ACCESS, "Unable to access the service control manager.."},
    {SResult::ERR_SLPD_OPEN, "Unable to open the slpd service control handle."},
    {SResult::ERR_SLPD_QUERY, "Unable to query slpd service status."},
    {SResult::ERR_SLPD_ALREADY_RUNNING, "Unable to the slpd service because it is already running."},
    {SResult::ERR_SLPD_WAIT_TIMEOUT, "Timeout at waiting for slpd service to start or stop."},
    {SResult::ERR_SLPD_START, "Unable to start slpd service."},
    {SResult::ERR_SLPD_STOP, "Unable to stop slpd service."},
    {SResult::ERR_SLPD_PROCESS_OPEN, "Unable to open the slpd service process (not running, error)."},
    {SResult::ERR_CONF_OPEN, "Unable to open/create SLP configuration file."},
    {SResult::ERR_CONF_LOAD, "Unable to load SLP configuration file data."},
    {SResult::ERR_CONF_WRITE, "Unable to write/update SLP configuration file."},
    {SResult::ERR_CONF_DIR_CREATE, "Unable to create SLP configuration file directory."},
    {SResult::ERR_CONF_CREATE, "Unable to create SLP configuration file."},
    {SResult::ERR_ENV_NOT_SET, "The OpenSLP environment variable 'OpenSLPConfig' is not set."},
    {SResult::ERR_RESTART_REQUIRED,
     "The application requires a restart to correctly recognize the OpenSLP environment variable "
     "'OpenSLPConfig'."},
    {SResult::ERR_PROPERTY_GET, "Failed to get SLP property value."},
    {SResult::ERR_PROPERTY_PARSE, "Failed to parse SLP property value."},
    {SResult::ERR_NOT_INITIALIZED, "Service discovery is not initialized."},
};

}  // namespace

SResult::SResult() : SResult(ERR_UNKNOWN) {}

SResult::SResult(const EError& code) : SResult(code, std::string()) {}

SResult::SResult(const EError& code, const std::string& detail) : SResult(code, detail, std::string()) {}

SResult::SResult(const EError& code, const std::string& detail, std::string debug)
    : code_(code), detail_(detail), debug_(std::move(debug)) {}

SResult::EError SResult::GetErrorCode() const {
  return code_;
}

std::string SResult::GetErrorDetail() const {
  return detail_;
}

std::string SResult::GetErrorDebug() const {
  return debug_;
}

std::string SResult::GetErrorDescription() const {
  return GetErrorDescription(code_);
}

std::string SResult::GetErrorDescription(EError code) {
  const auto* const row =
      std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                   [code](const Description& candidate) { return candidate.code == code; });
  return row == std::end(kDescriptions) ? kUnknownError : row->text;
}

bool SResult::IsOk() const {
  return code_ == ERR_SUCCESS;
}

bool SResult::IsNotOk() const {
  return !IsOk();
}

bool SResult::operator==(const SResult& other) const {
  return code_ == other.code_;
}

bool SResult::operator!=(const SResult& other) const {
  return !(*this == other);
}

bool SResult::operator==(const EError& code) const {
  return code_ == code;
}

bool SResult::operator!=(const EError& code) const {
  return !(*this == code);
}

bool operator==(const SResult::EError& code, const SResult& result) {
  return result.GetErrorCode() == code;
}

bool operator!=(const SResult::EError& code, const SResult& result) {
  return !(code == result);
}

std::string SResult::ToString() const {
  std::string line = GetErrorDescription() + " Code: " + std::to_string(static_cast<int>(code_)) + ".";
  if (!detail_.empty()) {
    line += " " + detail_;
  }
  if (!debug_.empty()) {
    line += " " + debug_;
  }
  return line;
}

SResult SResult::PrependErrorDebug(const std::string& prefix, std::string separator) const {
  return {code_, detail_, prefix + std::move(separator) + debug_};
}

}  // namespace kelsd
