// Service type requests and replies (RFC 2608 sections 10.1 and 10.2).
#include "fuzz/fuzz_target.h"
#include "fuzz/message_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  slp::fuzz::CheckMessage(data, size, {slp::FunctionId::kSrvTypeRqst, slp::FunctionId::kSrvTypeRply});
  return 0;
}
