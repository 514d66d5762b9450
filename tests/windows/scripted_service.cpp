// A service that starts and stops as its arguments say, one after the other:
//   pending=CHECKPOINT,HINT  says that it starts, or from the stop on that it stops
//   sleep=MILLISECONDS
//   running
//   stop=CHECKPOINT,HINT     waits for the order to stop, and answers it with this
//   stopped=EXITCODE
// The service manager starts it.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

char service_name[] = {'s', 'l', 'p', 'd', '\0'};
std::vector<std::string> steps;
SERVICE_STATUS_HANDLE status_handle = nullptr;
HANDLE stop_asked = nullptr;
DWORD stop_check_point = 0;
DWORD stop_hint = 0;

void Report(DWORD state, DWORD check_point, DWORD hint, DWORD exit_code) {
  SERVICE_STATUS status{SERVICE_WIN32_OWN_PROCESS,
                        state,
                        state == SERVICE_RUNNING ? static_cast<DWORD>(SERVICE_ACCEPT_STOP) : 0,
                        exit_code,
                        0,
                        check_point,
                        hint};
  SetServiceStatus(status_handle, &status);
}

DWORD WINAPI ControlHandler(DWORD control, DWORD, void*, void*) {
  if (control == SERVICE_CONTROL_STOP) {
    Report(SERVICE_STOP_PENDING, stop_check_point, stop_hint, NO_ERROR);
    SetEvent(stop_asked);
  }
  return control == SERVICE_CONTROL_STOP || control == SERVICE_CONTROL_INTERROGATE
             ? NO_ERROR
             : ERROR_CALL_NOT_IMPLEMENTED;
}

DWORD Number(const std::string& text) {
  return static_cast<DWORD>(std::strtoul(text.c_str(), nullptr, 10));
}

void WINAPI ServiceMain(DWORD, char**) {
  status_handle = RegisterServiceCtrlHandlerExA(service_name, &ControlHandler, nullptr);
  DWORD pending = SERVICE_START_PENDING;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const std::string name = steps[i].substr(0, steps[i].find('='));
    const std::string first = steps[i].substr(std::min(steps[i].size(), name.size() + 1));
    const std::string second = first.substr(std::min(first.size(), first.find(',') + 1));
    if (name == "pending") {
      Report(pending, Number(first), Number(second), NO_ERROR);
    } else if (name == "sleep") {
      Sleep(Number(first));
    } else if (name == "stop") {
      WaitForSingleObject(stop_asked, INFINITE);
      pending = SERVICE_STOP_PENDING;
    } else if (name == "stopped") {
      Report(SERVICE_STOPPED, 0, 0, Number(first));
    } else {
      // What it answers to the stop is known before that can come.
      if (i + 1 < steps.size()) {
        const std::string next =
            steps[i + 1].substr(std::min(steps[i + 1].size(), steps[i + 1].find('=') + 1));
        stop_check_point = Number(next);
        stop_hint = Number(next.substr(std::min(next.size(), next.find(',') + 1)));
      }
      Report(SERVICE_RUNNING, 0, 0, NO_ERROR);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  steps.assign(argv + 1, argv + argc);
  stop_asked = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  const SERVICE_TABLE_ENTRYA table[] = {{service_name, &ServiceMain}, {nullptr, nullptr}};
  return StartServiceCtrlDispatcherA(table) != 0 ? 0 : 1;
}
