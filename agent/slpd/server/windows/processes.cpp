#include "slpd/server/processes.h"

#include <windows.h>

#include <tlhelp32.h>

#include <asio/windows/object_handle.hpp>
#include <map>

namespace slp {
namespace {

class HandleNotice : public ProcessNotice {
 public:
  HandleNotice(asio::io_context& io, HANDLE process) : process_(io, process) {}

  void Wait(std::function<void(const asio::error_code& error)> ended) override {
    process_.async_wait(std::move(ended));
  }

 private:
  asio::windows::object_handle process_;
};

// One that has ended can be opened as long as anybody holds a handle of it.
bool HasEnded(HANDLE process) {
  return ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
}

}  // namespace

// The daemon's account, which has few rights, may wait for hardly any process of another account.
std::unique_ptr<ProcessNotice> ProcessNotice::Order(asio::io_context& io, std::uint32_t process_id) {
  const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, process_id);
  if (process == nullptr) {
    return nullptr;
  }
  auto notice = std::make_unique<HandleNotice>(io, process);
  return HasEnded(process) ? nullptr : std::move(notice);
}

// By number. Every account may take this list, without any right to the processes in it.
struct ProcessesNow::Look {
  bool known = false;
  std::map<std::uint32_t, std::string> identities;
};

// The list says when no process started; who started it, and from which file, tells most apart.
ProcessesNow::ProcessesNow() : look_(std::make_unique<Look>()) {
  const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) {
    return;
  }
  PROCESSENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL found = ::Process32First(snapshot, &entry); found != FALSE;
       found = ::Process32Next(snapshot, &entry)) {
    look_->identities[entry.th32ProcessID] =
        std::to_string(entry.th32ParentProcessID) + " " + entry.szExeFile;
  }
  ::CloseHandle(snapshot);
  look_->known = !look_->identities.empty();
}

ProcessesNow::~ProcessesNow() = default;

bool ProcessesNow::known() const {
  return look_->known;
}

std::optional<std::string> ProcessesNow::IdentityOf(std::uint32_t process_id) const {
  const auto entry = look_->identities.find(process_id);
  return process_id == 0 || entry == look_->identities.end() ? std::nullopt : std::optional(entry->second);
}

}  // namespace slp
