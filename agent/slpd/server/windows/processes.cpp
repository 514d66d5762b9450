#include "slpd/server/processes.h"

#include <windows.h>

#include <tlhelp32.h>

#include <asio/windows/object_handle.hpp>
#include <map>

namespace slp {
namespace {

// One that has ended can be opened as long as anybody holds a handle of it.
bool HasEnded(HANDLE process) {
  return ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
}

class HandleNotice : public ProcessNotice {
 public:
  explicit HandleNotice(asio::io_context& io) : process_(io) {}

  bool Open(std::uint32_t process_id) {
    const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, process_id);
    if (process == nullptr) {
      return false;
    }
    asio::error_code error;
    process_.assign(process, error);
    if (error) {
      ::CloseHandle(process);
    }
    return !error && !HasEnded(process);
  }

  void Wait(std::function<void(const asio::error_code& error)> ended) override {
    process_.async_wait(std::move(ended));
  }

 private:
  asio::windows::object_handle process_;
};

// Every account may take this list, without any right to the processes in it. It says when no process
// started; who started it, and from which file, tells most apart.
class Snapshot : public ProcessesNow {
 public:
  Snapshot() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
      return;
    }
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL found = ::Process32First(snapshot, &entry); found != FALSE;
         found = ::Process32Next(snapshot, &entry)) {
      identities_[entry.th32ProcessID] = std::to_string(entry.th32ParentProcessID) + " " + entry.szExeFile;
    }
    known_ = ::GetLastError() == ERROR_NO_MORE_FILES && !identities_.empty();
    ::CloseHandle(snapshot);
  }

  bool known() const override { return known_; }

  std::optional<std::string> IdentityOf(std::uint32_t process_id) const override {
    const auto entry = identities_.find(process_id);
    return process_id == 0 || entry == identities_.end() ? std::nullopt : std::optional(entry->second);
  }

 private:
  bool known_ = false;  ///< the list was read to its end
  std::map<std::uint32_t, std::string> identities_;
};

}  // namespace

// The daemon's account, which has few rights, may wait for hardly any process of another account.
std::unique_ptr<ProcessNotice> ProcessNotice::Order(asio::io_context& io, std::uint32_t process_id) {
  auto notice = std::make_unique<HandleNotice>(io);
  return notice->Open(process_id) ? std::move(notice) : nullptr;
}

std::unique_ptr<ProcessesNow> ProcessesNow::Look() {
  return std::make_unique<Snapshot>();
}

}  // namespace slp
