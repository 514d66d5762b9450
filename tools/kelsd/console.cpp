#include "console.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "hints.h"
#include "printable_text.h"
#include "result_view.h"
#include "terminal.h"

namespace kelsd_tool {
namespace {

// Attribute values may hold any bytes; what is not UTF-8 is replaced rather than refused.
std::string JsonText(const nlohmann::json& document, int indent) {
  return PrintableJson(document.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace));
}

}  // namespace

Console::Console(std::ostream& out, std::ostream& error) : out_(out), error_(error) {}

void Console::PrintTable(const Table& table) {
  table.Print(out_, OutputWidth());
  out_.flush();
}

void Console::PrintLine(const std::string& line) {
  out_ << PrintableText(line) << std::endl;
}

void Console::PrintJson(const nlohmann::json& document) {
  out_ << JsonText(document, 2) << std::endl;
}

void Console::PrintEvent(const nlohmann::json& event) {
  out_ << JsonText(event, -1) << std::endl;
}

void Console::PrintError(const kelsd::SResult& result) {
  if (json_) {
    error_ << JsonText({{"error", ToJson(result)}}, -1) << std::endl;
    return;
  }
  error_ << "kelsd: " << PrintableText(OneLine(result.ToString())) << '\n';
  const std::string hint = HintFor(result.GetErrorCode());
  if (!hint.empty()) {
    error_ << "hint: " << hint << '\n';
  }
  error_.flush();
}

void Console::PrintError(const std::string& message) {
  if (json_) {
    error_ << JsonText({{"error", {{"message", message}}}}, -1) << std::endl;
    return;
  }
  error_ << "kelsd: " << PrintableText(message) << std::endl;
}

void Console::PrintNote(const std::string& message) {
  if (!json_) {
    error_ << message << std::endl;
  }
}

ExitStatus Console::Fail(const kelsd::SResult& result) {
  PrintError(result);
  return kFailure;
}

ExitStatus Console::RejectUsage(const std::string& message) {
  PrintError(message);
  return kUsage;
}

bool Console::OutputIsComplete() {
  out_.flush();
  return out_.good();
}

}  // namespace kelsd_tool
