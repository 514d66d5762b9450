// Service requests and replies (RFC 2608 sections 8.1 and 8.2).
#include "fuzz/fuzz_target.h"
#include "fuzz/message_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  slp::fuzz::CheckMessage(data, size, {slp::FunctionId::kSrvRqst, slp::FunctionId::kSrvRply});
  return 0;
}
