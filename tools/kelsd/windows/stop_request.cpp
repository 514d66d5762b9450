// The console calls its handler on a thread of its own, which sets an event. When the console closes or the
// system goes down, the process ends as soon as that handler returns: it stays until the tool has done its
// last work.
#include "stop_request.h"

#include <windows.h>

#include <system_error>

namespace kelsd_tool {
namespace {

// The handler has no other way to it than a global.
HANDLE request_event = nullptr;

BOOL WINAPI HandleConsole(DWORD type) {
  SetEvent(request_event);
  if (type != CTRL_C_EVENT && type != CTRL_BREAK_EVENT) {
    Sleep(INFINITE);
  }
  return TRUE;
}

}  // namespace

StopRequest::StopRequest() {
  request_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  if (request_event == nullptr || SetConsoleCtrlHandler(HandleConsole, TRUE) == 0) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "no console handler");
  }
}

StopRequest::~StopRequest() {
  SetConsoleCtrlHandler(HandleConsole, FALSE);
  CloseHandle(request_event);
  request_event = nullptr;
}

void StopRequest::Wait() {
  WaitForSingleObject(request_event, INFINITE);
}

void StopRequest::Raise() {
  SetEvent(request_event);
}

}  // namespace kelsd_tool
