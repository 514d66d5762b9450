// What both kinds of search have in common. Any thread may call it.
#pragma once

#include <slp.h>

#include <exception>
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "kelsd/SResult.h"
#include "slp/slp_handle_box.h"
#include "slp/slp_impl.h"

namespace kelsd {

/// What a search callback leaves for the search that waits for it. The SLP library may be written in C: an
/// exception is kept here until the call has returned.
struct SearchOutcome {
  SLPError error = SLP_OK;
  std::exception_ptr exception;
};

/// Runs what a callback does with one reply; whether more replies are wanted. `take_reply` is called for
/// SLP_OK only and answers for that case.
template <typename TakeReply>
SLPBoolean HandleReply(SearchOutcome& outcome, SLPError code, const TakeReply& take_reply) {
  if (code != SLP_OK) {
    outcome.error = code == SLP_LAST_CALL ? SLP_OK : code;
    return SLP_FALSE;
  }
  outcome.error = SLP_OK;
  try {
    return take_reply();
  } catch (...) {
    outcome.exception = std::current_exception();
    return SLP_FALSE;
  }
}

/// The result of a search from the answer of `call` and what its callback left. Rethrows an exception of the
/// callback.
SResult SearchResult(const char* call, SLPError answer, const SearchOutcome& outcome);

/// The scope list of a search: cleaned, in upper case and sorted.
SResult MakeSearchScopes(std::string& list, const std::vector<std::string>& scopes);

/// Opens the handle of a search and binds it to `address` unless that is empty.
SResult OpenSearchHandle(SLPHandleBox& box, const std::string& address);

/// Runs `body` under the shared core lock, if the core is initialised. `name` goes in front of a failure's
/// debug trail.
template <typename Body>
SResult RunSearch(const char* name, const Body& body) {
  const auto locked = [&]() -> SResult {
    const std::shared_lock lock(CKelSLPImpl::CoreLock());
    if (!CKelSLPImpl::IsInitializedUnlocked()) {
      return {SResult::ERR_NOT_INITIALIZED};
    }
    return CKelSLPImpl::InvokeNamed(name, body);
  };
  return CKelSLPImpl::InvokeNoThrow(std::cref(locked));
}

}  // namespace kelsd
