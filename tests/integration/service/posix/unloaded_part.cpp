// A part of an application, loaded for a while, that brings the library with it.
#include <map>
#include <string>
#include <vector>

#include "kelsd/CKelSLPService.h"

namespace {

constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";
constexpr int kIntervalMs = 100;

}  // namespace

/// Registers a service, which starts the timer that renews it.
extern "C" KELSD_EXPORT bool Announce() {
  return kelsd::CKelSLP::Initialize().IsOk() &&
         kelsd::CKelSLPService::SetRegistrationCheckInterval(kIntervalMs).IsOk() &&
         kelsd::CKelSLPService::RegisterService(kUrl, 300, std::map<std::string, std::string>(), {}).IsOk();
}

/// Withdraws it, which ends the timer, and stops the daemon.
extern "C" KELSD_EXPORT bool Withdraw() {
  return kelsd::CKelSLPService::DeregisterService(kUrl).IsOk() && kelsd::CKelSLPService::StopSLPD().IsOk();
}
