// Waiting for somebody to end the tool: Ctrl-C, a request of the system, or the tool itself. One instance at
// a time; made before the library starts threads. One implementation a platform.
#pragma once

namespace kelsd_tool {

class StopRequest {
 public:
  /// From now on Ctrl-C and the system's requests to end are taken by this object.
  StopRequest();
  ~StopRequest();
  StopRequest(const StopRequest&) = delete;
  StopRequest& operator=(const StopRequest&) = delete;

  /// Returns after the first request, at once when there has been one.
  void Wait();

  /// A request of the tool's own. Any thread may call it.
  void Raise();
};

}  // namespace kelsd_tool
