#include "api/result_report.h"

#include <utility>

namespace slp::client {

ResultReport::ResultReport(Deliver deliver, int maximum_results)
    : deliver_(std::move(deliver)), left_(maximum_results) {}

bool ResultReport::Add(const char* text, unsigned short lifetime) {
  if (!wanted_ || left_ == 0) {
    return false;
  }
  --left_;
  wanted_ = deliver_(text, lifetime, SLP_OK);
  return wanted_ && left_ > 0;
}

SLPError ResultReport::Finish(SLPError error) {
  if (!wanted_) {
    return SLP_OK;
  }
  if (error == SLP_OK || deliver_(nullptr, 0, error)) {
    deliver_(nullptr, 0, SLP_LAST_CALL);
  }
  return error;
}

}  // namespace slp::client
