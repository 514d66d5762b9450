#include "support/fake_platform/fake_service_manager.h"

#include <algorithm>
#include <sstream>

namespace kelsd {

namespace {

std::string Hex(std::uint32_t number) {
  std::ostringstream text;
  text << "0x" << std::hex << number;
  return text.str();
}

}  // namespace

platform::ServiceManager::Handle FakeServiceManager::OpenManager(std::uint32_t access) {
  const std::lock_guard lock(mutex_);
  calls_.push_back("OpenSCManager(" + Hex(access) + ")");
  return Fails(ServiceCall::kOpenManager, "OpenSCManager") ? nullptr : Add(Kind::kManager);
}

platform::ServiceManager::Handle FakeServiceManager::OpenNamed(Handle manager, const std::string& name,
                                                               std::uint32_t access) {
  const std::lock_guard lock(mutex_);
  calls_.push_back("OpenService(" + name + "," + Hex(access) + ")");
  Check(manager, Kind::kManager, "OpenService");
  if (name != "slpd") {
    last_error_ = "There is no service '" + name + "'.";
    return nullptr;
  }
  return Fails(ServiceCall::kOpenService, "OpenService") ? nullptr : Add(Kind::kService);
}

void FakeServiceManager::CloseManaged(Handle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = handles_.find(reinterpret_cast<std::uintptr_t>(handle));
  if (found == handles_.end() || found->second == Kind::kProcess) {
    violations_.emplace_back("CloseServiceHandle of no such handle");
    return;
  }
  calls_.emplace_back(found->second == Kind::kService ? "CloseService" : "CloseManager");
  handles_.erase(found);
  // As on the real system, where a close may well change what it says about the last failure. Short enough
  // to need no memory: handles are closed in destructors.
  last_error_ = "Closed.";
}

bool FakeServiceManager::QueryStatus(Handle service, platform::ServiceStatus& status) {
  const std::lock_guard lock(mutex_);
  Check(service, Kind::kService, "Query");
  if (Fails(ServiceCall::kQuery, "Query")) {
    calls_.emplace_back("Query");
    return false;
  }
  if (!upcoming_.empty()) {
    status_ = upcoming_.front();
    upcoming_.pop_front();
  }
  calls_.push_back("Query=" + std::to_string(status_.current_state));
  status = status_;
  return true;
}

bool FakeServiceManager::RequestStart(Handle service) {
  std::function<void()> hook;
  {
    const std::lock_guard lock(mutex_);
    calls_.emplace_back("StartService");
    Check(service, Kind::kService, "StartService");
    if (Fails(ServiceCall::kStart, "StartService")) {
      return false;
    }
    status_ = {.current_state = platform::kServiceRunning, .process_id = status_.process_id + 1};
    start_time_ = clock_.Now();
    upcoming_.assign(after_start_.begin(), after_start_.end());
    hook = on_start_;
  }
  if (hook) {
    hook();
  }
  return true;
}

bool FakeServiceManager::RequestStop(Handle service, platform::ServiceStatus& status) {
  const std::lock_guard lock(mutex_);
  calls_.emplace_back("ControlService");
  Check(service, Kind::kService, "ControlService");
  if (Fails(ServiceCall::kStop, "ControlService")) {
    return false;
  }
  status_.current_state = platform::kServiceStopped;
  upcoming_.assign(after_stop_.begin(), after_stop_.end());
  status = status_;
  return true;
}

platform::ServiceManager::Handle FakeServiceManager::OpenServiceProcess(std::uint32_t process_id) {
  const std::lock_guard lock(mutex_);
  calls_.push_back("OpenProcess(" + std::to_string(process_id) + ")");
  return Fails(ServiceCall::kOpenProcess, "OpenProcess") ? nullptr : Add(Kind::kProcess);
}

void FakeServiceManager::CloseProcess(Handle process) {
  const std::lock_guard lock(mutex_);
  calls_.emplace_back("CloseProcess");
  Check(process, Kind::kProcess, "CloseProcess");
  handles_.erase(reinterpret_cast<std::uintptr_t>(process));
}

bool FakeServiceManager::CreationTime(Handle process, std::int64_t& seconds) {
  const std::lock_guard lock(mutex_);
  calls_.emplace_back("GetProcessTimes");
  Check(process, Kind::kProcess, "GetProcessTimes");
  if (Fails(ServiceCall::kCreationTime, "GetProcessTimes")) {
    return false;
  }
  seconds = start_time_;
  return true;
}

std::string FakeServiceManager::LastErrorText() {
  const std::lock_guard lock(mutex_);
  return last_error_;
}

void FakeServiceManager::SetStatus(const platform::ServiceStatus& status) {
  const std::lock_guard lock(mutex_);
  status_ = status;
}

platform::ServiceStatus FakeServiceManager::Status() {
  const std::lock_guard lock(mutex_);
  return status_;
}

void FakeServiceManager::Upcoming(std::vector<platform::ServiceStatus> statuses) {
  const std::lock_guard lock(mutex_);
  upcoming_.assign(statuses.begin(), statuses.end());
}

void FakeServiceManager::UpcomingAfterStart(std::vector<platform::ServiceStatus> statuses) {
  const std::lock_guard lock(mutex_);
  after_start_ = std::move(statuses);
}

void FakeServiceManager::UpcomingAfterStop(std::vector<platform::ServiceStatus> statuses) {
  const std::lock_guard lock(mutex_);
  after_stop_ = std::move(statuses);
}

void FakeServiceManager::RestartBehindTheBack() {
  const std::lock_guard lock(mutex_);
  status_ = {.current_state = platform::kServiceRunning, .process_id = status_.process_id + 1};
  start_time_ = clock_.Now();
}

void FakeServiceManager::SetStartTime(std::int64_t seconds) {
  const std::lock_guard lock(mutex_);
  start_time_ = seconds;
}

void FakeServiceManager::Fail(ServiceCall call, int times, int after) {
  const std::lock_guard lock(mutex_);
  failures_[call] = {after, times};
}

void FakeServiceManager::OnStart(std::function<void()> hook) {
  const std::lock_guard lock(mutex_);
  on_start_ = std::move(hook);
}

std::vector<std::string> FakeServiceManager::Calls() {
  const std::lock_guard lock(mutex_);
  return calls_;
}

std::size_t FakeServiceManager::CountCalls(const std::string& prefix) {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(std::count_if(
      calls_.begin(), calls_.end(), [&](const std::string& call) { return call.starts_with(prefix); }));
}

void FakeServiceManager::ForgetCalls() {
  const std::lock_guard lock(mutex_);
  calls_.clear();
}

int FakeServiceManager::OpenHandles() {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(handles_.size());
}

std::vector<std::string> FakeServiceManager::Violations() {
  const std::lock_guard lock(mutex_);
  return violations_;
}

bool FakeServiceManager::Fails(ServiceCall call, const std::string& name) {
  Failure& failure = failures_[call];
  if (failure.times == 0) {
    return false;
  }
  if (failure.after > 0) {
    --failure.after;
    return false;
  }
  --failure.times;
  last_error_ = "Refused: " + name + ".";
  return true;
}

platform::ServiceManager::Handle FakeServiceManager::Add(Kind kind) {
  handles_.emplace(++last_handle_, kind);
  return reinterpret_cast<Handle>(last_handle_);
}

void FakeServiceManager::Check(Handle handle, Kind kind, const std::string& call) {
  const auto found = handles_.find(reinterpret_cast<std::uintptr_t>(handle));
  if (found == handles_.end() || found->second != kind) {
    violations_.push_back(call + " on a foreign handle");
  }
}

}  // namespace kelsd
