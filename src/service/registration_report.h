// What the SLP API says about registrations, as results. Stateless: any thread may call it.
#pragma once

#include <slp.h>

#include "kelsd/SResult.h"

namespace kelsd {

/// The callback of SLPReg and SLPDereg: stores the code in the SLPError that `cookie` points to.
void SLPCALLBACK StoreReportedCode(SLPHandle handle, SLPError code, void* cookie);

[[nodiscard]] SResult::EError MapRegistrationError(SLPError code);
[[nodiscard]] SResult::EError MapDeregistrationError(SLPError code);

/// The result of a call of SLPReg or SLPDereg that returned one code and reported another to its callback.
[[nodiscard]] SResult RegistrationResult(SLPError returned, SLPError reported);
[[nodiscard]] SResult DeregistrationResult(SLPError returned, SLPError reported);

}  // namespace kelsd
