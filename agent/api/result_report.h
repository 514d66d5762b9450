// What a search reports to its caller: results, an error, the end. Belongs to one search on one thread.
#pragma once

#include <functional>

#include "slp.h"

namespace slp::client {

/// One call of the caller's callback; false when it wants no more. `text` is null with an error and at the
/// end.
using Deliver = std::function<bool(const char* text, unsigned short lifetime, SLPError error)>;

class ResultReport {
 public:
  /// Not more than `maximum_results` results.
  ResultReport(Deliver deliver, int maximum_results);

  /// Hands out one result; false when no more is wanted, be it that the callback said so or that it was the
  /// last one that counts.
  bool Add(const char* text, unsigned short lifetime);

  /// Hands out `error`, if it is one, and then, as long as the callback wants to hear more, SLP_LAST_CALL
  /// (RFC 2614 section 4.7.6). What the API function returns: `error`, or SLP_OK when the callback had ended
  /// the search.
  SLPError Finish(SLPError error);

 private:
  Deliver deliver_;
  int left_;
  bool wanted_ = true;
};

}  // namespace slp::client
