#include "api/handle_table.h"

#include <utility>

namespace slp::client {

HandleTable::Use::~Use() {
  if (entry_ != nullptr) {
    const std::lock_guard lock(table_.mutex_);
    entry_->in_use = false;
  }
}

HandleTable::Use::Use(Use&& other) noexcept
    : table_(other.table_), entry_(std::exchange(other.entry_, nullptr)), error_(other.error_) {}

HandleTable& HandleTable::Instance() {
  static HandleTable& table = *new HandleTable;
  return table;
}

SLPHandle HandleTable::Open(HandleState state) {
  auto entry = std::make_unique<Entry>(Entry{std::move(state)});
  Entry* const handle = entry.get();
  const std::lock_guard lock(mutex_);
  entries_.emplace(handle, std::move(entry));
  return handle;
}

bool HandleTable::Close(SLPHandle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(handle);
  if (found == entries_.end() || found->second->in_use) {
    return false;
  }
  entries_.erase(found);
  return true;
}

HandleTable::Use HandleTable::Take(SLPHandle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(handle);
  if (found == entries_.end()) {
    return {*this, nullptr, SLP_PARAMETER_BAD};
  }
  if (found->second->in_use) {
    return {*this, nullptr, SLP_HANDLE_IN_USE};
  }
  found->second->in_use = true;
  return {*this, found->second.get(), SLP_OK};
}

}  // namespace slp::client
