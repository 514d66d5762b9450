// The open handles. Every function may be called from any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "api/properties_share.h"
#include "slp.h"

namespace slp::client {

/// What a handle remembers between two calls.
struct HandleState {
  std::string language;
  std::optional<asio::ip::address> peer;  ///< requests go to this agent alone
  std::vector<std::string> interfaces;    ///< multicast leaves by these; empty: by net.slp.interfaces
};

class HandleTable {
  struct Entry {
    HandleState state;
    std::unique_ptr<PropertiesShare> share;
    bool in_use = false;
    bool closed = false;  // while in use; freed at the end of the call that uses it
  };

 public:
  /// The right to use a handle, until the end of the call that took it.
  class Use {
   public:
    ~Use();
    Use(Use&& other) noexcept;
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    Use& operator=(Use&&) = delete;

    /// SLP_PARAMETER_BAD: no open handle; SLP_HANDLE_IN_USE: another call, or the one that called back, uses
    /// it.
    SLPError error() const { return error_; }

    /// Only when error() is SLP_OK.
    HandleState& state() const { return entry_->state; }

   private:
    friend class HandleTable;
    Use(HandleTable& table, Entry* entry, SLPError error) : table_(table), entry_(entry), error_(error) {}

    HandleTable& table_;
    Entry* entry_;  // null without the right
    SLPError error_;
  };

  HandleTable() = default;
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;

  /// The one of this process. Never destroyed, so that it serves threads that outlive main.
  static HandleTable& Instance();

  SLPHandle Open(HandleState state, std::unique_ptr<PropertiesShare> share);

  /// From now on the handle is not open. One in use is freed at the end of the call that uses it. Nothing
  /// happens for a handle that is not open.
  void Close(SLPHandle handle);

  bool IsOpen(SLPHandle handle);

  Use Take(SLPHandle handle);

 private:
  void GiveBack(Entry* entry);

  std::mutex mutex_;
  std::map<const void*, std::unique_ptr<Entry>>
      entries_;  // by what callers hold, so that a foreign one is never read
};

}  // namespace slp::client
