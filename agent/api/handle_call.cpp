#include "api/handle_call.h"

#include <limits>
#include <random>

#include "properties/process_properties.h"

namespace slp::client {
namespace {

std::uint16_t RandomXid() {
  std::random_device source;
  return std::uniform_int_distribution<std::uint16_t>(1, std::numeric_limits<std::uint16_t>::max())(source);
}

}  // namespace

RequestContext MakeContext(const HandleState& handle) {
  return {.environment = {.clock = [] { return std::chrono::steady_clock::now(); }, .new_xid = RandomXid},
          .settings = RequestSettings(ProcessProperties::Instance().Snapshot()),
          .handle = handle};
}

}  // namespace slp::client
