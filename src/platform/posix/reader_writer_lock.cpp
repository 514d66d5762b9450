// The reader/writer lock on standard threads: their own shared mutex leaves it open who goes first, and lets
// overlapping readers starve a writer where it prefers readers.
#include "platform/reader_writer_lock.h"

#include <condition_variable>
#include <mutex>

namespace kelsd::platform {

struct ReaderWriterLock::State {
  std::mutex mutex;
  std::condition_variable readers_may_enter;
  std::condition_variable writer_may_enter;
  unsigned int readers = 0;
  unsigned int waiting_writers = 0;
  bool writer = false;
};

ReaderWriterLock::ReaderWriterLock() : state_(std::make_unique<State>()) {}

ReaderWriterLock::~ReaderWriterLock() = default;

void ReaderWriterLock::lock() {
  std::unique_lock guard(state_->mutex);
  ++state_->waiting_writers;
  state_->writer_may_enter.wait(guard, [this] { return !state_->writer && state_->readers == 0; });
  --state_->waiting_writers;
  state_->writer = true;
}

void ReaderWriterLock::unlock() {
  const std::lock_guard guard(state_->mutex);
  state_->writer = false;
  if (state_->waiting_writers > 0) {
    state_->writer_may_enter.notify_one();
  } else {
    state_->readers_may_enter.notify_all();
  }
}

void ReaderWriterLock::lock_shared() {
  std::unique_lock guard(state_->mutex);
  state_->readers_may_enter.wait(guard, [this] { return !state_->writer && state_->waiting_writers == 0; });
  ++state_->readers;
}

void ReaderWriterLock::unlock_shared() {
  const std::lock_guard guard(state_->mutex);
  --state_->readers;
  if (state_->readers == 0 && state_->waiting_writers > 0) {
    state_->writer_may_enter.notify_one();
  }
}

}  // namespace kelsd::platform
