#include "console.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "hints.h"
#include "terminal.h"

namespace kelsd_tool {

Console::Console(std::ostream& out, std::ostream& error) : out_(out), error_(error) {}

void Console::PrintTable(const Table& table) {
  table.Print(out_, OutputWidth());
  out_.flush();
}

void Console::PrintLine(const std::string& line) {
  out_ << line << std::endl;
}

void Console::PrintJson(const nlohmann::json& document) {
  // Attribute values may hold any bytes; what is not UTF-8 is replaced rather than refused.
  out_ << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

void Console::PrintEvent(const nlohmann::json& event) {
  out_ << event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

void Console::PrintError(const kelsd::SResult& result) {
  error_ << "kelsd: " << result.ToString() << '\n';
  const std::string hint = HintFor(result.GetErrorCode());
  if (!hint.empty()) {
    error_ << "hint: " << hint << '\n';
  }
  error_.flush();
}

void Console::PrintError(const std::string& message) {
  error_ << "kelsd: " << message << std::endl;
}

void Console::PrintNote(const std::string& message) {
  error_ << message << std::endl;
}

ExitStatus Console::Fail(const kelsd::SResult& result) {
  PrintError(result);
  return kFailure;
}

ExitStatus Console::RejectUsage(const std::string& message) {
  PrintError(message);
  return kUsage;
}

}  // namespace kelsd_tool
