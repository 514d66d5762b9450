#include "slpd/server/posix/system_call_filter.h"

#include <seccomp.h>

#include <cerrno>
#include <memory>

namespace slp {
namespace {

// What is refused, not what is allowed: a C library that comes to do something in another way must not bring
// the daemon down. Names that a kernel or processor does not know are passed over.
constexpr const char* kRefused[] = {
    // Start another program
    "execve", "execveat",
    // Look into or change other processes
    "ptrace", "process_vm_readv", "process_vm_writev", "kcmp", "pidfd_getfd", "process_madvise",
    // Change what the process sees of the system
    "mount", "umount", "umount2", "pivot_root", "chroot", "unshare", "setns", "move_mount", "open_tree",
    "fsopen", "fsconfig", "fsmount", "fspick", "mount_setattr", "open_by_handle_at", "name_to_handle_at",
    "mknod", "mknodat",
    // Become somebody else
    "setuid", "setgid", "setreuid", "setregid", "setresuid", "setresgid", "setgroups", "setfsuid", "setfsgid",
    "setuid32", "setgid32", "setreuid32", "setregid32", "setresuid32", "setresgid32", "setgroups32",
    // Change the kernel
    "init_module", "finit_module", "delete_module", "create_module", "kexec_load", "kexec_file_load", "bpf",
    "perf_event_open", "userfaultfd", "io_uring_setup", "io_uring_enter", "io_uring_register", "iopl",
    "ioperm", "modify_ldt", "lookup_dcookie",
    // Change the system for everybody
    "reboot", "swapon", "swapoff", "settimeofday", "clock_settime", "clock_settime64", "clock_adjtime",
    "clock_adjtime64", "adjtimex", "stime", "sethostname", "setdomainname", "acct", "quotactl", "quotactl_fd",
    "syslog", "vhangup", "nfsservctl",
    // Keys of others
    "add_key", "request_key", "keyctl"};

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

}  // namespace

bool HasSystemCallFilter() {
  return true;
}

int RefuseNeedlessSystemCalls() {
  const Filter filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
  if (!filter) {
    return ENOMEM;
  }
  for (const char* const name : kRefused) {
    const int number = seccomp_syscall_resolve_name(name);
    if (number == __NR_SCMP_ERROR) {
      continue;
    }
    if (const int error = seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EPERM), number, 0)) {
      return -error;
    }
  }
  return -seccomp_load(filter.get());
}

}  // namespace slp
