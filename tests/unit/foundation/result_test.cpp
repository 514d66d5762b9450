#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>

#include "kelsd/SResult.h"

namespace kelsd {
namespace {

struct CodeRow {
  SResult::EError code;
  int number;
  const char* description;
};

std::ostream& operator<<(std::ostream& stream, const CodeRow& row) {
  return stream << "code " << row.number;
}

const CodeRow kCodes[] = {
    {SResult::ERR_SUCCESS, 0, "Success. No error occurred."},
    {SResult::ERR_UNKNOWN, 1, "Unknown error."},
    {SResult::ERR_OUT_OF_MEMORY, 2,
     "Out of memory. Operation aborted because it failed to allocate enough memory."},
    {SResult::ERR_BASIC_API, 3,
     "Basic API error. The operation could not recover. Occurs when a system call or library fails."},
    {SResult::ERR_INVALID_PARAMETER, 4, "Invalid parameter(s) passed to operation."},
    {SResult::ERR_HANDLE_IN_USE, 5, "Concurrent use of the same SLP handle at a time."},
    {SResult::ERR_NOT_IMPLEMENTED, 6, "Unimplemented feature is used."},
    {SResult::ERR_LANGUAGE_NOT_SUPPORTED, 7,
     "No service/attribute information is available for the requested language but at least one DA or SA "
     "indicated that it might have information for another language."},
    {SResult::ERR_AUTHENTICATION_ABSENT, 8,
     "UA or SA failed to send an authenticator for requests or registrations."},
    {SResult::ERR_AUTHENTICATION_FAILED, 9, "Authentication on an SLP message failed."},
    {SResult::ERR_PARSE_ERROR, 10,
     "SLP message was rejected by a remote SLP agent. No information was retrieved, and at least one SA or "
     "DA indicated a protocol error. Data may be malformed/damaged in transit."},
    {SResult::ERR_SCOPE_NOT_SUPPORTED, 11, "Scope included in a request is not supported by the DA or SA."},
    {SResult::ERR_NETWORK_INIT_FAILED, 12,
     "Network initialization failed. SA or DA can not be contacted (check that slpd service is running)."},
    {SResult::ERR_NETWORK_TIMED_OUT, 13, "Unicast request timed out."},
    {SResult::ERR_NETWORK_ERROR, 14, "Failure of networking during normal operations."},
    {SResult::ERR_BUFFER_OVERFLOW, 15, "Outgoing request overflowed the maximum network MTU size."},
    {SResult::ERR_URL_EMPTY, 16, "The service URL is empty."},
    {SResult::ERR_URL_INVALID, 17, "The service URL is invalid/malformed."},
    {SResult::ERR_URL_ADDRESS_EMPTY, 18, "The service URL address specification is empty."},
    {SResult::ERR_TAG_EMPTY, 19, "The attribute tag is empty."},
    {SResult::ERR_TAG_BAD_CHARACTERS, 20,
     R"(The attribute tag contains bad characters. Any of "_*(),\!<=>~ \t\n\v\f\r" or control characters 0x00-0x1F, 0x7F.)"},
    {SResult::ERR_TAG_NOT_UNIQUE, 21, "The attribute tag is not unique (case insensitive comparision)."},
    {SResult::ERR_VALUE_BAD_CHARACTERS, 22, "The attribute value contains not allowed characters."},
    {SResult::ERR_SCOPE_EMPTY, 23, " The provided scope is empty."},
    {SResult::ERR_SCOPE_BAD_CHARACTERS, 24,
     R"(The provided scope contains bad characters. Any of "(),\!<=>~;*+ \t\n\v\f\r" or control characters 0x00-0x1F, 0x7F.)"},
    {SResult::ERR_ASYNC_NOT_SUPPORTED, 25,
     "Asynchronous operation not supported (memory constraints, lack of threading support)."},
    {SResult::ERR_BASIC_NETWORK_INIT_FAILED, 26, "Basic network initialization failed."},
    {SResult::ERR_INVALID_REGISTRATION, 27,
     "Malformed service URL or attributes. Registration was rejected by DA/all DAs."},
    {SResult::ERR_INVALID_DEREGISTRATION, 28,
     "Malformed service URL or Service URL being deregistered is not registered (was never registered or "
     "lifetime has expired) or an attempt is made to deregister a service that was registered on a different "
     "host."},
    {SResult::ERR_SCM_ACCESS, 29, "Unable to access the service control manager.."},
    {SResult::ERR_SLPD_OPEN, 30, "Unable to open the slpd service control handle."},
    {SResult::ERR_SLPD_QUERY, 31, "Unable to query slpd service status."},
    {SResult::ERR_SLPD_ALREADY_RUNNING, 32, "Unable to the slpd service because it is already running."},
    {SResult::ERR_SLPD_WAIT_TIMEOUT, 33, "Timeout at waiting for slpd service to start or stop."},
    {SResult::ERR_SLPD_START, 34, "Unable to start slpd service."},
    {SResult::ERR_SLPD_STOP, 35, "Unable to stop slpd service."},
    {SResult::ERR_SLPD_PROCESS_OPEN, 36, "Unable to open the slpd service process (not running, error)."},
    {SResult::ERR_CONF_OPEN, 37, "Unable to open/create SLP configuration file."},
    {SResult::ERR_CONF_LOAD, 38, "Unable to load SLP configuration file data."},
    {SResult::ERR_CONF_WRITE, 39, "Unable to write/update SLP configuration file."},
    {SResult::ERR_CONF_DIR_CREATE, 40, "Unable to create SLP configuration file directory."},
    {SResult::ERR_CONF_CREATE, 41, "Unable to create SLP configuration file."},
    {SResult::ERR_ENV_NOT_SET, 42, "The OpenSLP environment variable 'OpenSLPConfig' is not set."},
    {SResult::ERR_RESTART_REQUIRED, 43,
     "The application requires a restart to correctly recognize the OpenSLP environment variable "
     "'OpenSLPConfig'."},
    {SResult::ERR_PROPERTY_GET, 45, "Failed to get SLP property value."},
    {SResult::ERR_PROPERTY_PARSE, 46, "Failed to parse SLP property value."},
    {SResult::ERR_NOT_INITIALIZED, 47, "Service discovery is not initialized."},
};

// Everything that a result holds.
using Content = std::tuple<int, std::string, std::string>;

Content ContentOf(const SResult& result) {
  return {result.GetErrorCode(), result.GetErrorDetail(), result.GetErrorDebug()};
}

SResult::EError Code(int number) {
  return static_cast<SResult::EError>(number);
}

class ResultCodeTest : public testing::TestWithParam<CodeRow> {};

TEST_P(ResultCodeTest, HasItsNumberAndDescription) {
  const CodeRow& row = GetParam();
  EXPECT_EQ(static_cast<int>(row.code), row.number);
  EXPECT_EQ(SResult::GetErrorDescription(row.code), row.description);
  EXPECT_EQ(SResult(row.code).GetErrorDescription(), row.description);
}

TEST_P(ResultCodeTest, PrintsDescriptionAndNumber) {
  const CodeRow& row = GetParam();
  EXPECT_EQ(SResult(row.code).ToString(),
            row.description + std::string(" Code: ") + std::to_string(row.number) + ".");
}

TEST_P(ResultCodeTest, IsOkOnlyWhenZero) {
  const SResult result(GetParam().code);
  EXPECT_EQ(result.IsOk(), GetParam().number == 0);
  EXPECT_EQ(result.IsNotOk(), GetParam().number != 0);
}

INSTANTIATE_TEST_SUITE_P(AllCodes, ResultCodeTest, testing::ValuesIn(kCodes));

TEST(ResultTest, CodesAreZeroToFortySevenButTheReservedOne) {
  int expected = 0;
  for (const CodeRow& row : kCodes) {
    EXPECT_EQ(row.number, expected);
    expected += expected == 43 ? 2 : 1;
  }
  EXPECT_EQ(expected, 48);
}

TEST(ResultTest, OtherNumbersAreUnknownErrors) {
  for (const int number : {1, 44, 48, 1000, 2147483647, -1, -2147483647}) {
    EXPECT_EQ(SResult::GetErrorDescription(Code(number)), "Unknown error.") << number;
  }
  EXPECT_EQ(SResult(Code(-1)).ToString(), "Unknown error. Code: -1.");
}

TEST(ResultTest, CodeIsAThirtyTwoBitNumber) {
  EXPECT_EQ(sizeof(SResult::EError), 4U);
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<SResult::EError>, int>));
  EXPECT_FALSE(std::is_polymorphic_v<SResult>);
}

TEST(ResultTest, DefaultIsAFailure) {
  const SResult result;
  EXPECT_EQ(ContentOf(result), Content(1, "", ""));
  EXPECT_FALSE(result.IsOk());
  EXPECT_TRUE(result.IsNotOk());
  EXPECT_FALSE(result == SResult::ERR_SUCCESS);
  EXPECT_TRUE(result != SResult::ERR_SUCCESS);
  EXPECT_EQ(result.ToString(), "Unknown error. Code: 1.");
}

TEST(ResultTest, ConstructorsKeepWhatTheyAreGiven) {
  EXPECT_EQ(ContentOf(SResult(SResult::ERR_TAG_EMPTY)), Content(19, "", ""));
  EXPECT_EQ(ContentOf(SResult(SResult::ERR_TAG_EMPTY, "str: a")), Content(19, "str: a", ""));
  EXPECT_EQ(ContentOf(SResult(SResult::ERR_TAG_EMPTY, "str: a", "kelsd::A::B")),
            Content(19, "str: a", "kelsd::A::B"));
}

TEST(ResultTest, CopiesAndAssigns) {
  const SResult original(SResult::ERR_TAG_EMPTY, "detail", "debug");
  const SResult copy(original);
  SResult assigned;
  assigned = original;
  EXPECT_EQ(ContentOf(copy), ContentOf(original));
  EXPECT_EQ(ContentOf(assigned), ContentOf(original));
}

TEST(ResultTest, ComparisonsLookAtTheCodeOnly) {
  const SResult result(SResult::ERR_CONF_OPEN, "a", "b");
  const SResult same(SResult::ERR_CONF_OPEN, "c");
  const SResult other(SResult::ERR_CONF_LOAD, "a", "b");
  EXPECT_TRUE(result == same);
  EXPECT_FALSE(result != same);
  EXPECT_FALSE(result == other);
  EXPECT_TRUE(result != other);

  EXPECT_TRUE(result == SResult::ERR_CONF_OPEN);
  EXPECT_FALSE(result != SResult::ERR_CONF_OPEN);
  EXPECT_FALSE(result == SResult::ERR_CONF_LOAD);
  EXPECT_TRUE(result != SResult::ERR_CONF_LOAD);

  EXPECT_TRUE(SResult::ERR_CONF_OPEN == result);
  EXPECT_FALSE(SResult::ERR_CONF_OPEN != result);
  EXPECT_FALSE(SResult::ERR_CONF_LOAD == result);
  EXPECT_TRUE(SResult::ERR_CONF_LOAD != result);
}

TEST(ResultTest, PrintsDetailAndDebugTrailWhenThereAreAny) {
  EXPECT_EQ(SResult(SResult::ERR_NOT_INITIALIZED).ToString(),
            "Service discovery is not initialized. Code: 47.");
  EXPECT_EQ(
      SResult(SResult::ERR_INVALID_PARAMETER, "str: a,b", "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape")
          .ToString(),
      "Invalid parameter(s) passed to operation. Code: 4. str: a,b "
      "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape");
  EXPECT_EQ(SResult(SResult::ERR_URL_EMPTY, "detail").ToString(),
            "The service URL is empty. Code: 16. detail");
  EXPECT_EQ(SResult(SResult::ERR_URL_EMPTY, "", "debug").ToString(),
            "The service URL is empty. Code: 16. debug");
}

TEST(ResultTest, PrependsToTheDebugTrailOfACopy) {
  const SResult inner(SResult::ERR_UNKNOWN, "detail", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen");
  const SResult outer = inner.PrependErrorDebug("kelsd::CKelSLPImpl::InitializeInternal", " ")
                            .PrependErrorDebug("kelsd::CKelSLPImpl::Initialize", " ");
  EXPECT_EQ(ContentOf(outer), Content(1, "detail",
                                      "kelsd::CKelSLPImpl::Initialize kelsd::CKelSLPImpl::InitializeInternal "
                                      "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen"));
  EXPECT_EQ(ContentOf(inner), Content(1, "detail", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen"));
}

TEST(ResultTest, PrependKeepsTheSeparatorWhenNothingFollows) {
  EXPECT_EQ(ContentOf(SResult(SResult::ERR_URL_EMPTY).PrependErrorDebug("A", " ")), Content(16, "", "A "));
  EXPECT_EQ(ContentOf(SResult(SResult::ERR_URL_EMPTY, "", "B").PrependErrorDebug("A", "::")),
            Content(16, "", "A::B"));
}

}  // namespace
}  // namespace kelsd
