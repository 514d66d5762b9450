// A test as a user without the administrator's rights, where there are such users (not on Windows). One
// thread.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelsd::support {

/// While it lives, a process of the administrator acts for somebody else; any other process is as it was.
class WithoutPrivileges {
 public:
  WithoutPrivileges() : before_(geteuid()) {
    if (before_ == 0 && seteuid(kNobody) != 0) {
      ADD_FAILURE() << "the rights could not be given up";
    }
  }
  ~WithoutPrivileges() {
    if (before_ == 0) {
      EXPECT_EQ(seteuid(before_), 0);
    }
  }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  const uid_t before_;
};

}  // namespace kelsd::support
