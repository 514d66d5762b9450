#include "agent/slpd_server/waiting_process.h"

#include <windows.h>

#include <stdexcept>
#include <string>

namespace slp {

struct WaitingProcess::State {
  PROCESS_INFORMATION process = {};
};

// This very program once more, which never gets to run.
WaitingProcess::WaitingProcess(For who) : state_(std::make_unique<State>()) {
  std::string program(MAX_PATH, '\0');
  program.resize(::GetModuleFileNameA(nullptr, program.data(), static_cast<DWORD>(program.size())));
  SECURITY_DESCRIPTOR nobody{};
  ::InitializeSecurityDescriptor(&nobody, SECURITY_DESCRIPTOR_REVISION);
  ACL empty{};
  ::InitializeAcl(&empty, sizeof empty, ACL_REVISION);
  ::SetSecurityDescriptorDacl(&nobody, TRUE, &empty, FALSE);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, &nobody, FALSE};
  STARTUPINFOA start{};
  start.cb = sizeof start;
  if (::CreateProcessA(program.c_str(), nullptr, who == For::kNobody ? &attributes : nullptr, nullptr, FALSE,
                       CREATE_SUSPENDED, nullptr, nullptr, &start, &state_->process) == FALSE) {
    throw std::runtime_error("no process could be started");
  }
}

WaitingProcess::~WaitingProcess() {
  Kill();
  Reap();
}

void WaitingProcess::Kill() const {
  ::TerminateProcess(state_->process.hProcess, 1);
  ::WaitForSingleObject(state_->process.hProcess, INFINITE);
}

void WaitingProcess::Reap() {
  if (state_->process.hProcess != nullptr) {
    ::WaitForSingleObject(state_->process.hProcess, INFINITE);
    ::CloseHandle(state_->process.hThread);
    ::CloseHandle(state_->process.hProcess);
    state_->process.hProcess = nullptr;
  }
}

std::uint32_t WaitingProcess::id() const {
  return state_->process.dwProcessId;
}

}  // namespace slp
