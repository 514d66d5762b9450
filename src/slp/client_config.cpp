// Reading, keeping and applying the client configuration. Any thread may call the operations that take the
// lock.
#include <array>
#include <mutex>
#include <shared_mutex>
#include <utility>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "slp/core_state.h"
#include "slp/property_values.h"
#include "slp/slp_impl.h"

namespace kelsd {

namespace {

/// At most six values; from the first zero on every entry is written as zero.
std::string TimeoutListText(std::vector<int> timeouts) {
  if (timeouts.size() > CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES) {
    timeouts.resize(CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES);
  }
  std::vector<std::string> texts;
  bool ended = false;
  for (const int timeout : timeouts) {
    ended = ended || timeout == 0;
    texts.push_back(Stringify<int>(ended ? 0 : timeout));
  }
  return Join(texts);
}

struct AppliedProperty {
  CKelSLPConfig::EProperty property;
  std::string (*text)(const CKelSLPClientConfig&);
};

using Config = CKelSLPClientConfig;

/// What is applied, in this order.
constexpr std::array<AppliedProperty, 12> kAppliedProperties{{
    {CKelSLPConfig::PROP_MULTICASTTTL, [](const Config& c) { return Stringify<int>(c.GetMulticastTTL()); }},
    {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT,
     [](const Config& c) { return Stringify<int>(c.GetUnicastMaximumWait()); }},
    {CKelSLPConfig::PROP_UNICASTTIMEOUTS,
     [](const Config& c) { return TimeoutListText(c.GetUnicastTimeouts()); }},
    {CKelSLPConfig::PROP_MTU, [](const Config& c) { return Stringify<int>(c.GetMTU()); }},
    {CKelSLPConfig::PROP_BROADCASTADDR, [](const Config& c) { return c.GetBroadcastAddr(); }},
    {CKelSLPConfig::PROP_USEDHCP, [](const Config& c) { return BoolToLowerText(c.GetUseDHCP()); }},
    {CKelSLPConfig::PROP_INTERFACES, [](const Config& c) { return Join(c.GetInterfaces()); }},
    {CKelSLPConfig::PROP_MAXRESULTS, [](const Config& c) { return Stringify<int>(c.GetMaxResults()); }},
    {CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT,
     [](const Config& c) { return Stringify<int>(c.GetDADiscoveryMaximumWait()); }},
    {CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS,
     [](const Config& c) { return TimeoutListText(c.GetDADiscoveryTimeouts()); }},
    {CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT,
     [](const Config& c) { return Stringify<int>(c.GetMulticastMaximumWait()); }},
    {CKelSLPConfig::PROP_MULTICASTTIMEOUTS,
     [](const Config& c) { return TimeoutListText(c.GetMulticastTimeouts()); }},
}};

}  // namespace

SResult CKelSLPImpl::GetSLPClientConfig(CKelSLPClientConfig& config, std::vector<SResult>& errors) {
  return InvokeNoThrow([&]() -> SResult {
    const std::shared_lock lock(CoreLock());
    if (!IsInitializedUnlocked()) {
      return {SResult::ERR_NOT_INITIALIZED};
    }
    ClientPropertyValues values;
    std::vector<SResult> failures;
    ReadProperties(values, ClientProperties(), "CKelSLPImpl::GetSLPClientConfig", failures);
    config = MakeClientConfig(values, failures);
    errors = std::move(failures);
    return {SResult::ERR_SUCCESS};
  });
}

// 1. A configuration that equals the kept one changes nothing.
// 2. The resident handle is closed; nothing has happened when there is no memory for the configuration.
// 3. The configuration is kept, also when what follows fails: the next initialisation applies it,
// 4. and the core is initialised again.
SResult CKelSLPImpl::SetSLPClientConfig(const CKelSLPClientConfig& config) {
  return InvokeNamed("kelsd::CKelSLPImpl::SetSLPClientConfig", [&] {
    const std::unique_lock lock(CoreLock());
    State& state = GetState();
    if (state.client_config.EqualTo(config)) {
      return SResult(SResult::ERR_SUCCESS);
    }
    CKelSLPClientConfig kept = config;
    CloseResidentHandleUnlocked();
    state.client_config = std::move(kept);
    return InitializeInternal();
  });
}

void CKelSLPImpl::ApplyClientConfigInternal(const CKelSLPClientConfig& config) {
  for (const AppliedProperty& row : kAppliedProperties) {
    // A property that cannot be applied doesn't keep the others from it.
    InvokeNoThrow([&] {
      SetSLPProperty(row.property, row.text(config));
      return SResult(SResult::ERR_SUCCESS);
    });
  }
}

}  // namespace kelsd
