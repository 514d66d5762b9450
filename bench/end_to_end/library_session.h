// The measured operations through the library's classes, CKelSLPService and CKelSLPClient. Each call opens a
// handle of its own; searches ask 127.0.0.1 by unicast.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/end_to_end/session.h"
#include "kelsd/SResult.h"

namespace bench {

/// Throws std::runtime_error with what the library says, unless it is a success.
void Require(const kelsd::SResult& result);

class LibrarySession : public Session {
 public:
  /// Registers services in these scopes, in the daemon's own without any. The library is initialised.
  explicit LibrarySession(std::vector<std::string> scopes = {}) : scopes_(std::move(scopes)) {}

  void Register(std::size_t index) override;
  void Deregister(std::size_t index) override;
  std::size_t Find(const std::string& filter) override;
  std::size_t ReadAttributes(std::size_t index) override;
  /// No class does this: throws.
  std::size_t ReadTypes() override;

 private:
  std::vector<std::string> scopes_;
};

inline std::unique_ptr<Session> OpenLibrarySession() {
  return std::make_unique<LibrarySession>();
}

}  // namespace bench
