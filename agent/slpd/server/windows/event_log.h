// The system's event log, where an administrator looks first when a service does not start. Any thread may
// call it.
#pragma once

#include <windows.h>

#include <string>

namespace slp {

class EventLog {
 public:
  EventLog();
  EventLog(const EventLog&) = delete;
  EventLog& operator=(const EventLog&) = delete;
  ~EventLog();

  /// The daemon can't go on.
  void Error(const std::string& text) const { Report(EVENTLOG_ERROR_TYPE, text); }
  /// It goes on, and the administrator should look.
  void Warning(const std::string& text) const { Report(EVENTLOG_WARNING_TYPE, text); }

 private:
  void Report(WORD type, const std::string& text) const;

  const HANDLE source_;
};

/// Lets the event viewer show the daemon's texts as they are. Whether that worked; without it they are shown
/// with a remark that their description is missing.
bool AddEventSource();
void RemoveEventSource();

}  // namespace slp
