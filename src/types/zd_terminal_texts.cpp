// The enumerations of the terminal's REST interface and their texts.
#include "foundation/text_table.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd {
namespace {

using Terminal = CKelServiceTypeZDTerminalREST;

const TextTable<Terminal::EOperation>& Operations() {
  static const auto& table = *new TextTable<Terminal::EOperation>({
      {Terminal::OPERATION_NOT_SET, ""},
      {Terminal::OPERATION_NONE, "NONE"},
      {Terminal::OPERATION_SERVER, "SERVER"},
      {Terminal::OPERATION_BACKUP, "BACKUP"},
      {Terminal::OPERATION_RESTORE, "RESTORE"},
  });
  return table;
}

const TextTable<Terminal::EServerMode>& ServerModes() {
  static const auto& table = *new TextTable<Terminal::EServerMode>({
      {Terminal::SERVER_MODE_NOT_SET, ""},
      {Terminal::SERVER_MODE_LOCALHOST, "LOCALHOST"},
      {Terminal::SERVER_MODE_54FREE, "54FREE"},
      {Terminal::SERVER_MODE_MULTIUSER, "MULTIUSER"},
      {Terminal::SERVER_MODE_MAIN, "MAIN"},
      {Terminal::SERVER_MODE_REPLICATION, "REPLICATION"},
      {Terminal::SERVER_MODE_NS_ONLY, "NS_ONLY"},
      {Terminal::SERVER_MODE_54FREE_SERVERONLY, "54FREE_SERVERONLY"},
      {Terminal::SERVER_MODE_MULTIUSER_SERVERONLY, "MULTIUSER_SERVERONLY"},
      {Terminal::SERVER_MODE_DA_ONLY, "DA_ONLY"},
  });
  return table;
}

const TextTable<Terminal::EExecutableStatus>& ExecutableStatuses() {
  static const auto& table = *new TextTable<Terminal::EExecutableStatus>({
      {Terminal::EXECUTABLE_STATUS_NOT_SET, ""},
      {Terminal::EXECUTABLE_STATUS_STOPPED, "STOPPED"},
      {Terminal::EXECUTABLE_STATUS_RUNNING, "RUNNING"},
  });
  return table;
}

[[maybe_unused]] const auto& operations_built_at_load = Operations();
[[maybe_unused]] const auto& server_modes_built_at_load = ServerModes();
[[maybe_unused]] const auto& executable_statuses_built_at_load = ExecutableStatuses();

}  // namespace

CKelServiceTypeZDTerminalREST::EOperation CKelServiceTypeZDTerminalREST::StringToEOperation(
    const std::string& text, bool* unknown) {
  return Operations().FromText(text, unknown);
}

CKelServiceTypeZDTerminalREST::EServerMode CKelServiceTypeZDTerminalREST::StringToEServerMode(
    const std::string& text, bool* unknown) {
  return ServerModes().FromText(text, unknown);
}

CKelServiceTypeZDTerminalREST::EExecutableStatus CKelServiceTypeZDTerminalREST::StringToEExecutableStatus(
    const std::string& text, bool* unknown) {
  return ExecutableStatuses().FromText(text, unknown);
}

std::string CKelServiceTypeZDTerminalREST::ToString(const EOperation& operation) {
  return Operations().ToText(operation);
}

std::string CKelServiceTypeZDTerminalREST::ToString(const EServerMode& mode) {
  return ServerModes().ToText(mode);
}

std::string CKelServiceTypeZDTerminalREST::ToString(const EExecutableStatus& status) {
  return ExecutableStatuses().ToText(status);
}

}  // namespace kelsd
