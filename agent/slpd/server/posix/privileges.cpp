#include "slpd/server/privileges.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

#include "slpd/server/posix/capabilities.h"
#include "slpd/server/posix/system_call_filter.h"

namespace slp {
namespace {

constexpr uid_t kAdministrator = 0;

std::string NameOfUser(uid_t id) {
  const passwd* const entry = ::getpwuid(id);
  return entry != nullptr ? entry->pw_name : std::to_string(id);
}

std::string NameOfGroup(gid_t id) {
  const group* const entry = ::getgrgid(id);
  return entry != nullptr ? entry->gr_name : std::to_string(id);
}

// Only a file that is the administrator's own and goes by no other name: in a folder of somebody else's it
// may be a link to a file that nobody may give away.
void GiveAway(const std::string& path, uid_t user, gid_t group) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return;
  }
  struct stat status {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
      status.st_uid == kAdministrator && ::fchown(descriptor, user, group) != 0) {
    // Obstacles tells that the file cannot be opened again.
    errno = 0;
  }
  ::close(descriptor);
}

bool Permits(const std::string& path, int access) {
  return ::access(path.c_str(), access) == 0;
}

bool MayComeToRead(const std::string& path) {
  return Permits(path, R_OK) || errno == ENOENT;
}

bool MayComeToWrite(const std::string& path) {
  if (Permits(path, W_OK)) {
    return true;
  }
  const bool missing = errno == ENOENT;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  return missing && Permits(folder.empty() ? "." : folder.string(), W_OK | X_OK);
}

}  // namespace

struct Privileges::Account {
  std::string user;
  std::string group;
  uid_t user_id = 0;
  gid_t group_id = 0;
};

Privileges::Privileges() = default;

Privileges::~Privileges() = default;

bool Privileges::Prepare(const std::string& user, std::string& problem) {
  if (user.empty()) {
    return true;
  }
  const auto colon = user.find(':');
  Account account;
  account.user = user.substr(0, colon);
  const passwd* const entry = ::getpwnam(account.user.c_str());
  if (entry == nullptr) {
    problem = "--user: there is no user " + account.user;
    return false;
  }
  account.user_id = entry->pw_uid;
  account.group_id = entry->pw_gid;
  if (colon != std::string::npos) {
    account.group = user.substr(colon + 1);
    const group* const named = ::getgrnam(account.group.c_str());
    if (named == nullptr) {
      problem = "--user: there is no group " + account.group;
      return false;
    }
    account.group_id = named->gr_gid;
  } else {
    account.group = NameOfGroup(account.group_id);
  }
  if (::geteuid() == kAdministrator) {
    account_ = std::make_unique<Account>(account);
    return true;
  }
  if (account.user_id != ::geteuid() || (colon != std::string::npos && account.group_id != ::getegid())) {
    problem = "--user: only the administrator can start slpd as user " + account.user + ", group " +
              account.group + "; this is user " + NameOfUser(::geteuid()) + ", group " +
              NameOfGroup(::getegid()) + ": start it as the administrator, or leave --user out";
    return false;
  }
  return true;
}

// Steps:
// 1. The log file goes to the user, who opens it again.
// 2. Become the user and the group, and member of no other group. The rights of the administrator stay.
// 3. Give up those that are not kept, and any way to get them back.
// 4. Have system calls refused that are never needed from here on. A kernel that cannot do that is no reason
//    not to serve.
bool Privileges::GiveUp(const FilesInUse& files, std::string& line) {
  const bool administrator = ::geteuid() == kAdministrator;
  const auto failed = [&line](const std::string& deed, int error) {
    line = "cannot " + deed + ": " + std::generic_category().message(error);
    return false;
  };
  if (account_) {
    if (!files.log.empty()) {
      GiveAway(files.log, account_->user_id, account_->group_id);
    }
    const std::string deed = "become user " + account_->user + ", group " + account_->group;
    if (const int error = KeepRightsAsOtherUser()) {
      return failed(deed, error);
    }
    if (::setgroups(0, nullptr) != 0 || ::setgid(account_->group_id) != 0 ||
        ::setuid(account_->user_id) != 0) {
      return failed(deed, errno);
    }
  }
  if (const int error =
          LimitRights(administrator && !account_ ? KeptRights::kPortsAndFiles : KeptRights::kPorts)) {
    return failed("give up the administrator's rights", error);
  }
  if (account_) {
    line = "slpd: runs as user " + account_->user + ", group " + account_->group + " from here on, which " +
           (MayBindLowPorts() ? "may" : "may not") + " bind ports below 1024";
  } else if (administrator) {
    line = "slpd: runs as the administrator; with --user NAME it becomes that user once it has its sockets";
  }
  if (const int error = RefuseNeedlessSystemCalls()) {
    line += (line.empty() ? "slpd: the" : "; the") + std::string(" kernel filters no system calls: ") +
            std::generic_category().message(error);
  }
  return true;
}

std::vector<std::string> Privileges::Obstacles(const FilesInUse& files) const {
  std::vector<std::string> obstacles;
  if (!account_) {
    return obstacles;
  }
  for (const std::string& path : files.read) {
    if (!path.empty() && !MayComeToRead(path)) {
      std::string& text = obstacles.emplace_back("user ");
      text.append(account_->user).append(" may not read ").append(path);
      text.append(", so slpd cannot reload it: let its group read it and enter its folders (chgrp ");
      text.append(account_->group).append(" ").append(path).append("; chmod g+r ").append(path).append(")");
    }
  }
  if (!files.log.empty() && !MayComeToWrite(files.log)) {
    obstacles.push_back("user " + account_->user + " may not write " + files.log +
                        ", so slpd cannot open it again: let the log's rotation create it for this user "
                        "(logrotate: create 0640 " +
                        account_->user + " " + account_->group + ")");
  }
  return obstacles;
}

}  // namespace slp
