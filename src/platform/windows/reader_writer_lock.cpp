// The reader/writer lock on the system's slim reader/writer lock, which queues its waiters: a reader that
// comes after a waiting writer waits behind it.
#include "platform/reader_writer_lock.h"

#include <windows.h>

namespace kelsd::platform {

struct ReaderWriterLock::State {
  SRWLOCK lock = SRWLOCK_INIT;
};

ReaderWriterLock::ReaderWriterLock() : state_(std::make_unique<State>()) {}

ReaderWriterLock::~ReaderWriterLock() = default;

void ReaderWriterLock::lock() {
  AcquireSRWLockExclusive(&state_->lock);
}

void ReaderWriterLock::unlock() {
  ReleaseSRWLockExclusive(&state_->lock);
}

void ReaderWriterLock::lock_shared() {
  AcquireSRWLockShared(&state_->lock);
}

void ReaderWriterLock::unlock_shared() {
  ReleaseSRWLockShared(&state_->lock);
}

}  // namespace kelsd::platform
