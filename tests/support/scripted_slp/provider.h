// The provider's books: scripts, log, handles, memory and properties. Any thread may call it.
#pragma once

#include <slp.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/scripted_slp/own_behaviour.h"
#include "support/scripted_slp/scripted_slp.h"

namespace scripted_slp {

/// Marks what this thread does as the provider's own work, or as its caller's again.
class WorkMark {
 public:
  explicit WorkMark(bool own);
  ~WorkMark();
  WorkMark(const WorkMark&) = delete;
  WorkMark& operator=(const WorkMark&) = delete;

 private:
  const bool former_;
};

/// One call of an SLP function: logs it, does what its script says first, and keeps its handle in use while
/// it lasts.
class Call {
 public:
  /// Throws what the script throws.
  Call(Function function, const std::string& name, const std::vector<std::string>& arguments);
  Call(Function function, const std::string& name, SLPHandle handle, std::vector<std::string> arguments);
  ~Call();
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  /// What the test wants instead of the provider's own behaviour.
  const std::optional<Reply>& Script() const { return script_; }
  /// Why the handle cannot be used; SLP_OK if it can.
  SLPError HandleError() const { return handle_error_; }
  /// Adds what the call resulted in to its line in the log.
  void LogResult(const std::string& result);

 private:
  void Begin(Function function, std::string text);

  SLPHandle handle_ = nullptr;
  SLPError handle_error_ = SLP_OK;
  std::size_t line_ = 0;
  unsigned int log_ = 0;
  std::optional<Reply> script_;
};

/// "null" for a null pointer.
std::string LogText(const char* text);

SLPHandle OpenHandle();
void CloseHandle(SLPHandle handle);
/// "#1" for the handle that was opened first.
std::string HandleName(SLPHandle handle);

char* HandOutText(const std::string& text);
SLPSrvURL* HandOutURL(const ParsedURL& url);
void TakeBack(void* memory);

void LogAnswer(SLPBoolean answer);

/// A pointer that stays readable for good; null for none.
const char* Keep(const std::optional<std::string>& text);
void SetProcessProperty(const std::string& key, const std::string& value);

}  // namespace scripted_slp
