// The exported face of the core. Any thread may call it.
#include "kelsd/CKelSLP.h"
#include "slp/slp_impl.h"

namespace kelsd {

CKelSLP::~CKelSLP() = default;

SResult CKelSLP::Initialize() {
  return CKelSLPImpl::Initialize();
}

bool CKelSLP::IsInitialized() {
  return CKelSLPImpl::IsInitialized();
}

SResult CKelSLP::ParseServiceURL(SKelServiceSearchResult& result, const std::string& url) {
  return CKelSLPImpl::ParseServiceURL(result, url);
}

}  // namespace kelsd
