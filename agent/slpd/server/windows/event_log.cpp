#include "slpd/server/windows/event_log.h"

#include "slpd/server/windows/service_name.h"

namespace slp {
namespace {

// The message file that comes with Windows for texts of others: its messages 1 to 1000 are nothing but "%1".
constexpr char kMessageFile[] = "%SystemRoot%\\System32\\EventCreate.exe";
constexpr DWORD kMessage = 1;
constexpr DWORD kTypes = EVENTLOG_ERROR_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_INFORMATION_TYPE;
constexpr char kSources[] = "SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\";

std::string SourceKey() {
  return std::string(kSources) + kServiceName;
}

}  // namespace

EventLog::EventLog() : source_(RegisterEventSourceA(nullptr, kServiceName)) {}

EventLog::~EventLog() {
  if (source_ != nullptr) {
    DeregisterEventSource(source_);
  }
}

void EventLog::Report(WORD type, const std::string& text) const {
  const char* texts[] = {text.c_str()};
  if (source_ != nullptr) {
    ReportEventA(source_, type, 0, kMessage, nullptr, 1, 0, texts, nullptr);
  }
}

bool AddEventSource() {
  const std::string key = SourceKey();
  return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), "EventMessageFile", REG_EXPAND_SZ, kMessageFile,
                         sizeof(kMessageFile)) == ERROR_SUCCESS &&
         RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), "TypesSupported", REG_DWORD, &kTypes,
                         sizeof(kTypes)) == ERROR_SUCCESS;
}

void RemoveEventSource() {
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, SourceKey().c_str());
}

}  // namespace slp
