// The operations that are measured, whichever interface carries them out. A session belongs to one thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace bench {

/// Every operation throws std::runtime_error when it fails.
class Session {
 public:
  Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  virtual ~Session() = default;

  virtual void Register(std::size_t index) = 0;
  virtual void Deregister(std::size_t index) = 0;

  /// The number of services found.
  virtual std::size_t Find(const std::string& filter) = 0;

  /// The number of bytes of the attribute list.
  virtual std::size_t ReadAttributes(std::size_t index) = 0;

  /// The number of bytes of the list of types.
  virtual std::size_t ReadTypes() = 0;
};

/// Opens a session for the calling thread; throws std::runtime_error. Called on several threads at once.
using OpenSession = std::function<std::unique_ptr<Session>()>;

}  // namespace bench
