// Registrations, deregistrations and their acknowledgments (RFC 2608 sections 8.3, 8.4 and 10.6).
#include "fuzz/fuzz_target.h"
#include "fuzz/message_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  slp::fuzz::CheckMessage(data, size,
                          {slp::FunctionId::kSrvReg, slp::FunctionId::kSrvDereg, slp::FunctionId::kSrvAck});
  return 0;
}
