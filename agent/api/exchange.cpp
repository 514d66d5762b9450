#include "api/exchange.h"

namespace slp::client {

SLPError ToSlpError(Exchange::End end) {
  switch (end) {
    case Exchange::End::kReplied:
      return SLP_OK;
    case Exchange::End::kTimedOut:
    case Exchange::End::kRefused:
      return SLP_NETWORK_TIMED_OUT;
    case Exchange::End::kTooLarge:
      return SLP_BUFFER_OVERFLOW;
    case Exchange::End::kFailed:
      break;
  }
  return SLP_NETWORK_ERROR;
}

}  // namespace slp::client
