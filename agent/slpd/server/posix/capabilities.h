// The single rights into which the Linux kernel divides those of the administrator (capabilities). Elsewhere
// there are none, and nothing happens. One thread, the only one of the process.
#pragma once

namespace slp {

/// What is kept of the rights that the process holds. Nothing that it does not hold is added.
enum class KeptRights {
  kPorts,          ///< binding ports below 1024
  kPortsAndFiles,  ///< these, and opening files whatever their permissions say
};

/// Lets the rights of the administrator outlast the change to another user, until LimitRights. 0 or errno.
[[nodiscard]] int KeepRightsAsOtherUser();

/// Gives up all other rights for good: no program that this process might start gets any back. 0 or errno.
[[nodiscard]] int LimitRights(KeptRights kept);

/// Whether the process holds the right to bind ports below 1024.
bool MayBindLowPorts();

}  // namespace slp
