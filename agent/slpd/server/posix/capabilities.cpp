#include "slpd/server/posix/capabilities.h"

#ifdef __linux__
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#endif

namespace slp {

#ifdef __linux__
namespace {

using CapabilitySets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

constexpr std::uint32_t Bit(unsigned int capability) {
  return 1U << capability;
}

// All in the first of the words that the kernel takes.
constexpr std::uint32_t kPorts = Bit(CAP_NET_BIND_SERVICE);
constexpr std::uint32_t kFiles = Bit(CAP_DAC_OVERRIDE);

int ReadCapabilities(CapabilitySets& sets) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  return ::syscall(SYS_capget, &header, sets.data()) == 0 ? 0 : errno;
}

int WriteCapabilities(const CapabilitySets& sets) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  return ::syscall(SYS_capset, &header, sets.data()) == 0 ? 0 : errno;
}

// Only a process that may change its rights may do this, and no other one has any to hand on.
void DropBoundingSet() {
  for (unsigned long capability = 0; ::prctl(PR_CAPBSET_READ, capability, 0UL, 0UL, 0UL) >= 0; ++capability) {
    ::prctl(PR_CAPBSET_DROP, capability, 0UL, 0UL, 0UL);
  }
}

// The right to empty the bounding set goes with the change of user, unless it is in the effective set again.
int RaisePermitted() {
  CapabilitySets sets{};
  if (const int error = ReadCapabilities(sets)) {
    return error;
  }
  for (__user_cap_data_struct& set : sets) {
    set.effective = set.permitted;
  }
  return WriteCapabilities(sets);
}

}  // namespace

int KeepRightsAsOtherUser() {
  return ::prctl(PR_SET_KEEPCAPS, 1UL, 0UL, 0UL, 0UL) == 0 ? 0 : errno;
}

// Steps:
// 1. What programs that are started might get: nothing, by no way.
// 2. What the process itself holds: what is kept, as far as it was held.
int LimitRights(KeptRights kept) {
  if (const int error = RaisePermitted()) {
    return error;
  }
  DropBoundingSet();
  // Kernels before 4.3 have no ambient set, and refuse.
  ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0UL, 0UL, 0UL);
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1UL, 0UL, 0UL, 0UL) != 0 ||
      ::prctl(PR_SET_KEEPCAPS, 0UL, 0UL, 0UL, 0UL) != 0) {
    return errno;
  }
  CapabilitySets sets{};
  if (const int error = ReadCapabilities(sets)) {
    return error;
  }
  const std::uint32_t wanted = kept == KeptRights::kPorts ? kPorts : kPorts | kFiles;
  const std::uint32_t held = sets[0].permitted & wanted;
  sets = {};
  sets[0].permitted = held;
  sets[0].effective = held;
  return WriteCapabilities(sets);
}

bool MayBindLowPorts() {
  CapabilitySets sets{};
  return ReadCapabilities(sets) == 0 && (sets[0].effective & kPorts) != 0;
}
#else
int KeepRightsAsOtherUser() {
  return 0;
}

int LimitRights(KeptRights) {
  return 0;
}

bool MayBindLowPorts() {
  return false;
}
#endif

}  // namespace slp
