// Whom the daemon runs as and what it may do: everything that its user may until it has its sockets, then
// only what serving takes. One thread, the only one of the process.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace slp {

/// Files that the daemon opens again while it runs; empty names are none.
struct FilesInUse {
  std::vector<std::string> read;  ///< on the order to reload; those that do not exist may come later
  std::string log;                ///< created anew when it was moved away
};

class Privileges {
 public:
  Privileges();
  Privileges(const Privileges&) = delete;
  Privileges& operator=(const Privileges&) = delete;
  ~Privileges();

  /// Looks up whom the process shall become: "NAME" or "NAME:GROUP", else the user's own group; empty: it
  /// stays who it is. False when that cannot be; `problem` says why. Changes nothing.
  [[nodiscard]] bool Prepare(const std::string& user, std::string& problem);

  /// Becomes that user, whom the log file goes to, and gives up for good what serving does not take. `line`
  /// is what the log should say about it, if anything; with false, what went wrong.
  [[nodiscard]] bool GiveUp(const FilesInUse& files, std::string& line);

  /// What will fail, or has failed, because of what was given up, and what to do about it.
  std::vector<std::string> Obstacles(const FilesInUse& files) const;

 private:
  struct Account;
  std::unique_ptr<Account> account_;
};

}  // namespace slp
