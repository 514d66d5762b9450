// Making the service agent.
#include "service/service_impl.h"

namespace kelsd {

CKelSLPServiceImpl& CKelSLPServiceImpl::Instance() {
  static CKelSLPServiceImpl& instance =
      *new CKelSLPServiceImpl({platform::SystemServices(), platform::SystemClock(), platform::SystemTimers(),
                               platform::SystemKnownFolders()});
  return instance;
}

CKelSLPServiceImpl::CKelSLPServiceImpl(const ServicePlatform& platform)
    : m_platform(platform), m_reports(std::make_shared<DroppedServiceReports>()), m_serviceLock(*m_reports) {}

// The timer's ticks use the other members.
CKelSLPServiceImpl::~CKelSLPServiceImpl() {
  m_timer.reset();
}

}  // namespace kelsd
