// The service "slpd" of this host, led to the built daemon, with all its files in a folder of its own: what
// the library finds when it looks for the service, and what a test may do behind the library's back. One
// thread; one at a time in a process.
#pragma once

#include <memory>
#include <string>

namespace kelsd::support {

/// Its settings are slp.conf in the folder, which "OpenSLPConfig" names; its log is slpd.log there. It does
/// not run before the library starts it. All of it is given back at the end: also when the test process
/// crashes, no daemon goes on to serve on the test's port while later tests run.
class HostDaemon {
 public:
  HostDaemon();
  HostDaemon(const HostDaemon&) = delete;
  HostDaemon& operator=(const HostDaemon&) = delete;
  ~HostDaemon();

  const std::string& folder() const { return folder_; }
  std::string File(const std::string& name) const;

  /// The process that serves, 0 when none does.
  unsigned long ProcessId() const;
  /// How often the daemon was started so far.
  int Starts() const;
  /// Ends the process at once, without any farewell.
  void Kill() const;

  /// From here on the service runs, while nobody serves on `port`: there the test itself plays the daemon.
  /// Stop it with this object.
  void RunWithoutServing(unsigned short port);

 private:
  struct State;

  std::string folder_;
  std::unique_ptr<State> state_;
};

/// The whole content of a file; empty when there is none.
std::string FileContent(const std::string& path);

}  // namespace kelsd::support
