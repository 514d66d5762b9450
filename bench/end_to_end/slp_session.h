// The operations that are measured, over the SLP C API alone, so that they run over any provider of it. One
// session has one handle; a session belongs to one thread.
#pragma once

#include <slp.h>

#include <cstddef>
#include <string>

namespace bench {

class SlpSession {
 public:
  enum class Requests { kUnicast, kByProperties };

  /// Opens a handle whose requests go to 127.0.0.1 by unicast, or as the properties say. Throws
  /// std::runtime_error, as every operation does, when the API reports an error.
  explicit SlpSession(Requests requests = Requests::kUnicast);
  SlpSession(const SlpSession&) = delete;
  SlpSession& operator=(const SlpSession&) = delete;
  ~SlpSession();

  void Register(std::size_t index);
  void Deregister(std::size_t index);

  /// The number of services found.
  std::size_t Find(const std::string& filter);

  /// The number of bytes of the attribute list.
  std::size_t ReadAttributes(std::size_t index);

  /// The number of bytes of the list of types.
  std::size_t ReadTypes();

 private:
  SLPHandle handle_ = nullptr;
};

}  // namespace bench
