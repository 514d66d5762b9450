#include "support/child_process/child_process.h"

#include <windows.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <stdexcept>

#include "support/wait_until.h"

namespace kelsd::support {
namespace {

/// A file or process of the system; closed with the object.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { CloseHandle(handle_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  HANDLE get() const { return handle_; }

 private:
  const HANDLE handle_;
};

HANDLE OpenFor(const std::string& file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileA(file.c_str(), access, kShared, &inheritable, disposition, FILE_ATTRIBUTE_NORMAL,
                     nullptr);
}

/// An argument as the C runtime of the program reads it: back slashes count only in front of a quote.
std::string Quoted(const std::string& argument) {
  std::string quoted = "\"";
  std::size_t slashes = 0;
  for (const char character : argument) {
    if (character == '"') {
      quoted.append(slashes + 1, '\\');
    }
    slashes = character == '\\' ? slashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(slashes, '\\') + "\"";
}

std::string CommandLine(const std::vector<std::string>& command) {
  std::string line;
  for (const std::string& argument : command) {
    line += (line.empty() ? "" : " ") + Quoted(argument);
  }
  return line;
}

/// What a new program gets of this one's handles: those named.
class Inheritance {
 public:
  template <std::size_t kCount>
  explicit Inheritance(std::array<HANDLE, kCount>& handles) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    void* const start = memory_.data();
    list_ = static_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(start);
    if (!InitializeProcThreadAttributeList(list_, 1, 0, &size) ||
        !UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(),
                                   kCount * sizeof(HANDLE), nullptr, nullptr)) {
      throw std::runtime_error("no list of handles could be made");
    }
  }
  ~Inheritance() { DeleteProcThreadAttributeList(list_); }
  Inheritance(const Inheritance&) = delete;
  Inheritance& operator=(const Inheritance&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST list() const { return list_; }

 private:
  std::vector<std::byte> memory_;
  LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
};

BOOL WINAPI IgnoreEvent(DWORD) {
  return TRUE;
}

}  // namespace

struct ChildProcess::State {
  explicit State(const PROCESS_INFORMATION& started)
      : id(started.dwProcessId), process(started.hProcess), thread(started.hThread) {}

  const DWORD id;
  const Handle process;
  const Handle thread;
};

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& output_file,
                           const std::string& error_file) {
  const Handle input(OpenFor("NUL", GENERIC_READ, OPEN_EXISTING));
  const Handle output(OpenFor(output_file, GENERIC_WRITE, CREATE_ALWAYS));
  const Handle error(OpenFor(error_file, GENERIC_WRITE, CREATE_ALWAYS));
  std::array<HANDLE, 3> handles{input.get(), output.get(), error.get()};
  const Inheritance inheritance(handles);
  STARTUPINFOEXA start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  start.StartupInfo.hStdInput = input.get();
  start.StartupInfo.hStdOutput = output.get();
  start.StartupInfo.hStdError = error.get();
  start.lpAttributeList = inheritance.list();
  std::string line = CommandLine(command);
  PROCESS_INFORMATION started{};
  // A console of its own that nobody sees, so that Ctrl+C can be sent to this program alone.
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE,
                      CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &start.StartupInfo,
                      &started)) {
    throw std::runtime_error(command.front() + " could not be started");
  }
  state_ = std::make_unique<State>(started);
}

ChildProcess::~ChildProcess() {
  Kill();
}

int ChildProcess::id() const {
  return static_cast<int>(state_->id);
}

std::optional<int> ChildProcess::Wait(Milliseconds limit) {
  DWORD status = 0;
  if (WaitForSingleObject(state_->process.get(), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(state_->process.get(), &status)) {
    return std::nullopt;
  }
  constexpr DWORD kEndedByCtrlC = 0xC000013A;  // STATUS_CONTROL_C_EXIT
  return status == kEndedByCtrlC ? 128 + SIGINT : static_cast<int>(status);
}

// A program can send Ctrl+C only to a console that is its own: this one leaves its own for the moment.
void ChildProcess::Send(int signal) {
  if (signal != SIGINT && signal != SIGTERM) {
    throw std::runtime_error("Windows has no signal " + std::to_string(signal));
  }
  const auto sent = [this] {
    return AttachConsole(state_->id) != 0 && SetConsoleCtrlHandler(IgnoreEvent, TRUE) != 0 &&
           GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0;
  };
  FreeConsole();
  // A program that has only just been started has no console yet.
  const bool done = WaitUntil([&] { return Wait(Milliseconds(0)) || sent(); }, std::chrono::seconds(10));
  FreeConsole();
  AttachConsole(ATTACH_PARENT_PROCESS);
  if (!done) {
    throw std::runtime_error("Ctrl+C could not be sent");
  }
}

void ChildProcess::Kill() {
  if (!Wait(Milliseconds(0))) {
    TerminateProcess(state_->process.get(), kKilled);
    Wait(std::chrono::seconds(20));
  }
}

}  // namespace kelsd::support
