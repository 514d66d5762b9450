// Marks a registration or a pass as under way for the length of a scope.
#pragma once

namespace kelsd {

/// Brings back the value that it found, so that a renewal inside a pass leaves the pass marked. The caller
/// holds m_serviceLock for longer than this lives.
class BusyGuard {
 public:
  explicit BusyGuard(bool& busy) : busy_(busy), found_(busy) { busy_ = true; }
  ~BusyGuard() { busy_ = found_; }
  BusyGuard(const BusyGuard&) = delete;
  BusyGuard& operator=(const BusyGuard&) = delete;

 private:
  bool& busy_;
  const bool found_;
};

}  // namespace kelsd
