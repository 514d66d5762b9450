// A provider of the SLP C API for tests: a test says what each call does and reads back what was called.
//
// Any thread may call it; the functions of slp.h that it provides are in effect on all threads at once. A
// test begins with Reset().
#pragma once

#include <slp.h>

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/scripted_slp/own_behaviour.h"

namespace scripted_slp {

/// The functions whose calls can be scripted.
enum class Function {
  kOpen,
  kClose,
  kAssociateIP,
  kAssociateIFList,
  kReg,
  kDereg,
  kDelAttrs,
  kFindSrvTypes,
  kFindSrvs,
  kFindAttrs,
  kFindScopes,
  kGetRefreshInterval,
  kParseSrvURL,
  kParseAttrs,
  kEscape,
  kUnescape,
  kGetProperty,
  kSetProperty,
  kSetAppPropertyFile,
};

/// One call of a callback. Which members count depends on the callback.
struct Delivery {
  SLPError code = SLP_OK;
  /// URL, attribute list or service types; none: a null pointer.
  std::optional<std::string> text;
  unsigned short lifetime = 0;
};

/// What one call does instead of the provider's own behaviour, in the order of the members.
struct Reply {
  /// Runs within the call, while no lock of the provider is held: latches, or further calls.
  std::function<void()> run;
  /// Leaves the call in place of everything that follows.
  std::exception_ptr exception;
  /// The provider's own behaviour follows, and nothing below counts.
  bool carry_on = false;
  /// The callback is called with these in turn until it asks for no more; after the last one a search that
  /// still wants more gets SLP_LAST_CALL.
  std::vector<Delivery> deliveries;
  /// What the call hands out: a text, a parsed URL in its five parts, or a property. None: a null pointer.
  std::optional<std::string> text;
  std::optional<ParsedURL> url;
  SLPError result = SLP_OK;
};

/// The call returns `result` and hands out nothing.
Reply Returns(SLPError result);
/// SLP_OK, but nothing is handed out.
Reply HandsOutNothing();
/// SLP_OK, and `text` is handed out.
Reply HandsOut(std::string text);
/// The callback gets `deliveries`, then the call returns `result`.
Reply Delivers(std::vector<Delivery> deliveries, SLPError result = SLP_OK);
/// `run`, then the provider's own behaviour.
Reply Runs(std::function<void()> run);

template <typename Exception>
Reply Throws(Exception exception) {
  Reply reply;
  reply.exception = std::make_exception_ptr(std::move(exception));
  return reply;
}

/// Deliveries of a search.
Delivery Service(std::string url, unsigned short lifetime);
Delivery Attributes(std::string list);
/// A delivery of a search or a registration that only carries a code.
Delivery Code(SLPError code);

/// Forgets scripts, log, counts and properties, and starts again with the built-in properties. Handles and
/// memory that are still out become foreign.
void Reset();

/// The next call of `function` that has no earlier reply of its own does `reply`; several queue up.
void Next(Function function, Reply reply);
/// Every call of `function` for which nothing is queued does `reply`.
void Always(Function function, Reply reply);
/// `decide` chooses for every call of `function` for which nothing is queued; it gets the call as it stands
/// in the log. No reply: the provider's own behaviour.
void Decide(Function function, std::function<std::optional<Reply>(const std::string& call)> decide);

/// Gives a property a value that stays when the properties are loaded again, as if it stood in a file.
void SetFileProperty(const std::string& key, const std::string& value);
/// Makes a property unknown.
void RemoveProperty(const std::string& key);
/// The value that SLPGetProperty would return now; none: a null pointer.
std::optional<std::string> Property(const std::string& key);

/// All calls so far, in order: "SLPOpen(en,0)=#1", "SLPFindSrvs(#1,service:x,TAMRO,(a=1))", "SLPClose(#1)".
/// Handles are numbered in the order of their opening; a null text is "null". SLPFree isn't among them.
std::vector<std::string> Calls();
/// Those whose text begins with `prefix`.
std::vector<std::string> Calls(const std::string& prefix);
/// All but the readings and settings of properties.
std::vector<std::string> CallsButProperties();
void ForgetCalls();

/// What the callbacks answered, in order.
std::vector<SLPBoolean> CallbackAnswers();

/// Handles that are open now, and pieces of memory that wait for SLPFree.
int OpenHandles();
int OutstandingMemory();
/// Whether this thread is within the provider, and not in a callback of its caller.
bool DoingOwnWork();
/// Breaches of the API's rules: a closed or foreign handle used, a handle used by two calls at once, memory
/// freed that wasn't handed out.
std::vector<std::string> Violations();

}  // namespace scripted_slp
