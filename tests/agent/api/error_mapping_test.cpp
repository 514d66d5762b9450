#include "api/error_mapping.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace slp::client {
namespace {

TEST(ErrorMapping, EveryCodeOfTheProtocol) {
  const std::vector<std::pair<Error, SLPError>> expected = {
      {Error::kOk, SLP_OK},
      {Error::kLanguageNotSupported, SLP_LANGUAGE_NOT_SUPPORTED},
      {Error::kParseError, SLP_PARSE_ERROR},
      {Error::kInvalidRegistration, SLP_INVALID_REGISTRATION},
      {Error::kScopeNotSupported, SLP_SCOPE_NOT_SUPPORTED},
      {Error::kAuthenticationUnknown, SLP_AUTHENTICATION_FAILED},
      {Error::kAuthenticationAbsent, SLP_AUTHENTICATION_ABSENT},
      {Error::kAuthenticationFailed, SLP_AUTHENTICATION_FAILED},
      {Error::kVersionNotSupported, SLP_NOT_IMPLEMENTED},
      {Error::kInternalError, SLP_NETWORK_ERROR},
      {Error::kDaBusyNow, SLP_NETWORK_TIMED_OUT},
      {Error::kOptionNotUnderstood, SLP_NOT_IMPLEMENTED},
      {Error::kInvalidUpdate, SLP_INVALID_UPDATE},
      {Error::kMessageNotSupported, SLP_NOT_IMPLEMENTED},
      {Error::kRefreshRejected, SLP_REFRESH_REJECTED},
      {static_cast<Error>(8), SLP_NETWORK_ERROR},
      {static_cast<Error>(0xFFFF), SLP_NETWORK_ERROR},
  };
  for (const auto& [protocol, api] : expected) {
    EXPECT_EQ(ToSlpError(protocol), api) << static_cast<int>(protocol);
  }
}

}  // namespace
}  // namespace slp::client
