// Where the tool writes: results on standard output, errors on standard error. What other hosts and the user
// have written in it is made fit for a terminal.
#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "exit_status.h"
#include "kelsd/SResult.h"
#include "table.h"

namespace kelsd_tool {

class Console {
 public:
  Console(std::ostream& out, std::ostream& error);

  /// From now on errors are one line of JSON each, and notes are left out.
  void UseJson() { json_ = true; }

  void PrintTable(const Table& table);
  void PrintLine(const std::string& line);
  void PrintJson(const nlohmann::json& document);
  /// One line of JSON, for verbs that go on and tell of several things.
  void PrintEvent(const nlohmann::json& event);

  /// The result as the library words it, and what to do about it.
  void PrintError(const kelsd::SResult& result);
  /// A message of the tool's own.
  void PrintError(const std::string& message);
  /// Something for people only, on standard error.
  void PrintNote(const std::string& message);

  /// PrintError, and the status to leave with.
  ExitStatus Fail(const kelsd::SResult& result);
  ExitStatus RejectUsage(const std::string& message);

  /// Whether all of the results could be written so far.
  bool OutputIsComplete();

 private:
  std::ostream& out_;
  std::ostream& error_;
  bool json_ = false;
};

}  // namespace kelsd_tool
