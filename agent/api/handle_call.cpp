#include "api/handle_call.h"

#include <limits>
#include <memory>
#include <mutex>
#include <random>
#include <utility>

#include "properties/process_properties.h"

namespace slp::client {
namespace {

std::uint16_t RandomXid() {
  // To open the system's source takes longer than all else that a search does here.
  static std::mutex& mutex = *new std::mutex;
  static std::random_device& source = *new std::random_device;
  const std::lock_guard lock(mutex);
  return std::uniform_int_distribution<std::uint16_t>(1, std::numeric_limits<std::uint16_t>::max())(source);
}

/// The settings of the properties as they are now. Reading them takes longer than all else that a search does
/// here, and they hardly ever change.
RequestSettings CurrentSettings() {
  struct Read {
    std::shared_ptr<const Properties> from;
    std::shared_ptr<const RequestSettings> settings;
  };
  static std::mutex& mutex = *new std::mutex;
  static Read& last = *new Read;

  std::shared_ptr<const Properties> properties = ProcessProperties::Instance().Snapshot();
  std::shared_ptr<const RequestSettings> settings;
  {
    const std::lock_guard lock(mutex);
    if (last.from != properties) {
      last.settings = std::make_shared<const RequestSettings>(*properties);
      last.from = std::move(properties);
    }
    settings = last.settings;
  }
  return *settings;
}

}  // namespace

RequestContext MakeContext(const HandleState& handle) {
  return {.environment = {.clock = [] { return std::chrono::steady_clock::now(); }, .new_xid = RandomXid},
          .settings = CurrentSettings(),
          .handle = handle};
}

}  // namespace slp::client
