// A reader/writer lock whose writers are never starved. Any thread may call it.
#pragma once

#include <memory>

namespace kelsd::platform {

/// Lets many readers or one writer in. Not recursive, neither way: a thread that holds the lock and takes it
/// again waits forever. A waiting writer lets no new reader in, so overlapping readers never keep it waiting
/// for longer than those last that were in before it.
///
/// The operations bear the standard library's names, so that std::unique_lock and std::shared_lock take this
/// lock.
class ReaderWriterLock {
 public:
  ReaderWriterLock();
  /// Nobody may hold or wait for the lock.
  ~ReaderWriterLock();
  ReaderWriterLock(const ReaderWriterLock&) = delete;
  ReaderWriterLock& operator=(const ReaderWriterLock&) = delete;

  /// Waits until no one else is in.
  void lock();
  void unlock();

  /// Waits until no writer is in or waiting.
  void lock_shared();
  void unlock_shared();

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

}  // namespace kelsd::platform
