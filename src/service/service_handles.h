// Owners of handles of the service manager. Used by one thread at a time.
#pragma once

#include "platform/service_manager.h"

namespace kelsd {

/// A handle of the manager and one of a service; closed service first.
class ServiceHandles {
 public:
  explicit ServiceHandles(platform::ServiceManager& services) : services_(services) {}
  ~ServiceHandles() {
    if (service != nullptr) {
      services_.CloseManaged(service);
    }
    if (manager != nullptr) {
      services_.CloseManaged(manager);
    }
  }
  ServiceHandles(const ServiceHandles&) = delete;
  ServiceHandles& operator=(const ServiceHandles&) = delete;

  platform::ServiceManager::Handle manager = nullptr;
  platform::ServiceManager::Handle service = nullptr;

 private:
  platform::ServiceManager& services_;
};

/// A handle of a service's process.
class ProcessHandleGuard {
 public:
  ProcessHandleGuard(platform::ServiceManager& services, platform::ServiceManager::Handle process)
      : services_(services), process_(process) {}
  ~ProcessHandleGuard() { services_.CloseProcess(process_); }
  ProcessHandleGuard(const ProcessHandleGuard&) = delete;
  ProcessHandleGuard& operator=(const ProcessHandleGuard&) = delete;

 private:
  platform::ServiceManager& services_;
  const platform::ServiceManager::Handle process_;
};

}  // namespace kelsd
