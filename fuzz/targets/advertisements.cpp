// Advertisements of directory and service agents (RFC 2608 sections 8.5 and 8.6).
#include "fuzz/fuzz_target.h"
#include "fuzz/message_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  slp::fuzz::CheckMessage(data, size, {slp::FunctionId::kDaAdvert, slp::FunctionId::kSaAdvert});
  return 0;
}
