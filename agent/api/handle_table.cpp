#include "api/handle_table.h"

#include <utility>

namespace slp::client {

HandleTable::Use::~Use() {
  if (entry_ != nullptr) {
    table_.GiveBack(entry_);
  }
}

HandleTable::Use::Use(Use&& other) noexcept
    : table_(other.table_), entry_(std::exchange(other.entry_, nullptr)), error_(other.error_) {}

HandleTable& HandleTable::Instance() {
  static HandleTable& table = *new HandleTable;
  return table;
}

SLPHandle HandleTable::Open(HandleState state, std::unique_ptr<PropertiesShare> share) {
  auto entry = std::make_unique<Entry>(Entry{std::move(state), std::move(share)});
  Entry* const handle = entry.get();
  const std::lock_guard lock(mutex_);
  entries_.emplace(handle, std::move(entry));
  return handle;
}

void HandleTable::Close(SLPHandle handle) {
  std::unique_ptr<Entry> freed;  // outlives the lock, since the properties have their own
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(handle);
  if (found == entries_.end()) {
    return;
  }
  if (found->second->in_use) {
    found->second->closed = true;
    return;
  }
  freed = std::move(found->second);
  entries_.erase(found);
}

bool HandleTable::IsOpen(SLPHandle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(handle);
  return found != entries_.end() && !found->second->closed;
}

void HandleTable::GiveBack(Entry* entry) {
  std::unique_ptr<Entry> freed;  // outlives the lock
  const std::lock_guard lock(mutex_);
  entry->in_use = false;
  if (entry->closed) {
    const auto found = entries_.find(entry);
    freed = std::move(found->second);
    entries_.erase(found);
  }
}

HandleTable::Use HandleTable::Take(SLPHandle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(handle);
  if (found == entries_.end() || found->second->closed) {
    return {*this, nullptr, SLP_PARAMETER_BAD};
  }
  if (found->second->in_use) {
    return {*this, nullptr, SLP_HANDLE_IN_USE};
  }
  found->second->in_use = true;
  return {*this, found->second.get(), SLP_OK};
}

}  // namespace slp::client
