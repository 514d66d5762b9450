#include "service/registration_report.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/same_result.h"

namespace kelsd {
namespace {

struct Row {
  SLPError code;
  SResult::EError registration;
  SResult::EError deregistration;
};

const std::vector<Row> kRows{
    {SLP_OK, SResult::ERR_SUCCESS, SResult::ERR_SUCCESS},
    {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
    {SLP_INVALID_REGISTRATION, SResult::ERR_INVALID_REGISTRATION, SResult::ERR_INVALID_DEREGISTRATION},
    {SLP_SCOPE_NOT_SUPPORTED, SResult::ERR_SCOPE_NOT_SUPPORTED, SResult::ERR_UNKNOWN},
    {SLP_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
    {SLP_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW},
    {SLP_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT},
    {SLP_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY, SResult::ERR_OUT_OF_MEMORY},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER, SResult::ERR_INVALID_PARAMETER},
    {SLP_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR},
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API, SResult::ERR_BASIC_API},
    {SLP_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE},
    {SLP_NOT_IMPLEMENTED, SResult::ERR_UNKNOWN, SResult::ERR_UNKNOWN},
    {SLP_LANGUAGE_NOT_SUPPORTED, SResult::ERR_UNKNOWN, SResult::ERR_UNKNOWN},
    {SLP_LAST_CALL, SResult::ERR_UNKNOWN, SResult::ERR_UNKNOWN},
    {static_cast<SLPError>(-30), SResult::ERR_UNKNOWN, SResult::ERR_UNKNOWN},
};

SResult Expected(SResult::EError error, const char* call) {
  return error == SResult::ERR_SUCCESS ? SResult(error) : SResult(error, "", call);
}

TEST(RegistrationReport, TranslatesEveryCode) {
  for (const Row& row : kRows) {
    EXPECT_EQ(MapRegistrationError(row.code), row.registration) << row.code;
    EXPECT_EQ(MapDeregistrationError(row.code), row.deregistration) << row.code;
    EXPECT_THAT(RegistrationResult(row.code, SLP_OK), SameResult(Expected(row.registration, "SLPReg")));
    EXPECT_THAT(RegistrationResult(SLP_OK, row.code),
                SameResult(Expected(row.registration, "SLPReg callback")));
    EXPECT_THAT(DeregistrationResult(row.code, SLP_OK), SameResult(Expected(row.deregistration, "SLPDereg")));
    EXPECT_THAT(DeregistrationResult(SLP_OK, row.code),
                SameResult(Expected(row.deregistration, "SLPDereg callback")));
  }
}

TEST(RegistrationReport, WhatWasReturnedCountsBeforeWhatWasReported) {
  EXPECT_THAT(RegistrationResult(SLP_PARSE_ERROR, SLP_NETWORK_ERROR),
              SameResult(SResult(SResult::ERR_PARSE_ERROR, "", "SLPReg")));
}

TEST(RegistrationReport, StoresWhatIsReported) {
  SLPError code = SLP_OK;
  StoreReportedCode(nullptr, SLP_HANDLE_IN_USE, &code);
  EXPECT_EQ(code, SLP_HANDLE_IN_USE);
}

}  // namespace
}  // namespace kelsd
