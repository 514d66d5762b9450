// The measured operations over the SLP C API alone, so that they run over any provider of it.
#pragma once

#include <slp.h>

#include <cstddef>
#include <memory>
#include <string>

#include "bench/end_to_end/session.h"

namespace bench {

/// Keeps one handle, whose requests go to 127.0.0.1 by unicast.
class SlpSession : public Session {
 public:
  static constexpr unsigned short kLifetime = 10800;  // seconds

  /// Throws std::runtime_error.
  SlpSession();
  ~SlpSession() override;

  void Register(std::size_t index) override { RegisterFor(index, kLifetime); }
  void RegisterFor(std::size_t index, unsigned short seconds);
  void Deregister(std::size_t index) override;
  std::size_t Find(const std::string& filter) override;
  std::size_t ReadAttributes(std::size_t index) override;
  std::size_t ReadTypes() override;

 private:
  SLPHandle handle_ = nullptr;
};

/// Opens a handle, and with it the socket, for each operation.
class SlpSessionForEach : public Session {
 public:
  void Register(std::size_t index) override { SlpSession().Register(index); }
  void Deregister(std::size_t index) override { SlpSession().Deregister(index); }
  std::size_t Find(const std::string& filter) override { return SlpSession().Find(filter); }
  std::size_t ReadAttributes(std::size_t index) override { return SlpSession().ReadAttributes(index); }
  std::size_t ReadTypes() override { return SlpSession().ReadTypes(); }
};

inline std::unique_ptr<Session> OpenSlpSession() {
  return std::make_unique<SlpSession>();
}

inline std::unique_ptr<Session> OpenSlpSessionForEach() {
  return std::make_unique<SlpSessionForEach>();
}

}  // namespace bench
