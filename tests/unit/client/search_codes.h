// The SLP codes that both kinds of search must translate.
#pragma once

#include <slp.h>

#include <vector>

#include "kelsd/SResult.h"

namespace kelsd {

struct SearchCode {
  SLPError slp;
  SResult::EError error;
};

inline const std::vector<SearchCode>& FailingSearchCodes() {
  static const std::vector<SearchCode> rows = {
      {SLP_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE},
      {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
      {SLP_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR},
      {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
      {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
      {SLP_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED},
      {SLP_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT},
      {SLP_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW},
      {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
      {SLP_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT},
      {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
      {SLP_LANGUAGE_NOT_SUPPORTED, SResult::ERR_UNKNOWN},
      {SLP_INVALID_REGISTRATION, SResult::ERR_UNKNOWN},
      {SLP_SCOPE_NOT_SUPPORTED, SResult::ERR_UNKNOWN},
      {SLP_INVALID_UPDATE, SResult::ERR_UNKNOWN},
      {SLP_REFRESH_REJECTED, SResult::ERR_UNKNOWN},
      {SLP_NOT_IMPLEMENTED, SResult::ERR_UNKNOWN},
      {SLP_TYPE_ERROR, SResult::ERR_UNKNOWN},
      {SLPError(-30), SResult::ERR_UNKNOWN},
  };
  return rows;
}

}  // namespace kelsd
