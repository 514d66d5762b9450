#include "bench/end_to_end/library_session.h"

#include <stdexcept>

#include "bench/end_to_end/slp_session.h"
#include "bench/support/services.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"

namespace bench {
namespace {

constexpr const char* kAgent = "127.0.0.1";

}  // namespace

void Require(const kelsd::SResult& result) {
  if (result.GetErrorCode() != kelsd::SResult::ERR_SUCCESS) {
    throw std::runtime_error("the library failed with " + std::to_string(result.GetErrorCode()) + ": " +
                             result.GetErrorDetail() + " " + result.GetErrorDebug());
  }
}

void LibrarySession::Register(std::size_t index) {
  Require(kelsd::CKelSLPService::RegisterService(Url(index), SlpSession::kLifetime, AttributeValues(index),
                                                 scopes_));
}

void LibrarySession::Deregister(std::size_t index) {
  Require(kelsd::CKelSLPService::DeregisterService(Url(index)));
}

std::size_t LibrarySession::Find(const std::string& filter) {
  std::vector<kelsd::SKelServiceSearchResult> found;
  Require(kelsd::CKelSLPClient::FindServices(found, kType, {}, filter, kAgent));
  return found.size();
}

std::size_t LibrarySession::ReadAttributes(std::size_t index) {
  kelsd::SKelServiceAttributeSearchResult found;
  const std::vector<std::string> all_tags;
  Require(kelsd::CKelSLPClient::FindAttributes(found, Url(index), all_tags, {}, kAgent));
  return found.AttributeString.size();
}

std::size_t LibrarySession::ReadTypes() {
  throw std::runtime_error("the library has no call that lists service types");
}

}  // namespace bench
