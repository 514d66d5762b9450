// The snapshot of all SLP properties. The caller holds the core lock exclusively.
#include "slp/property_values.h"
#include "slp/slp_impl.h"

namespace kelsd {

void CKelSLPImpl::GetSLPServiceConfigInternal(CKelSLPServiceConfig& config, std::vector<SResult>& errors) {
  ServicePropertyValues values;
  ReadProperties(values, ServiceProperties(), "CKelSLPImpl::GetSLPServiceConfigInternal", errors);
  config = MakeServiceConfig(values, errors);
}

}  // namespace kelsd
