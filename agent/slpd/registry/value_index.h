// An index from attribute values to the entries that have them: the value itself, or all values in a range of
// texts. Small on purpose, a registry of many services holds several postings for each. Two values may share
// a key, so what is found is a candidate only. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "slpd/registry/value_order.h"

namespace slp {

/// The place of an entry in the store.
using EntryId = std::uint32_t;
inline constexpr EntryId kNoEntry = 0xFFFFFFFF;

/// What a value is found by.
struct ValueKey {
  std::uint32_t hash = 0;
  std::string text;  ///< at most 255 bytes; gives the values their order

  bool operator==(const ValueKey&) const = default;
  bool operator<(const ValueKey& other) const {
    return std::tie(hash, text) < std::tie(other.hash, other.text);
  }
};

class ValueIndex {
 public:
  /// One value that somebody has; until it is removed.
  using ValueId = std::uint32_t;
  static constexpr ValueId kNoValue = 0xFFFFFFFF;

  /// The postings of one entry, to be handed back when it goes.
  using Chain = std::uint32_t;
  static constexpr Chain kNoChain = 0xFFFFFFFF;

  ValueIndex();
  ValueIndex(const ValueIndex&) = delete;
  ValueIndex& operator=(const ValueIndex&) = delete;

  /// Adds `entry` under `keys`, which are all different.
  Chain Add(EntryId entry, const std::vector<ValueKey>& keys);

  /// Takes back what Add returned. Takes as long as the chain is, however many others share its keys.
  void Remove(Chain chain);

  /// Bytes of the heap that are reckoned for one key of an entry, when no other entry has it.
  static std::size_t BytesOfKey(std::size_t text_size);

  /// Bytes that Remove of this chain would give back; takes as long.
  std::size_t BytesOf(Chain chain) const;

  /// Bytes of the heap that are reckoned for all there is.
  std::size_t bytes() const { return bytes_; }

  /// The value of this key; kNoValue when no entry has it.
  ValueId Find(const ValueKey& key) const;

  /// Shows the values whose texts are not before `from`, in the order of their texts, until `visit` returns
  /// false.
  void VisitFrom(std::string_view from,
                 const std::function<bool(ValueId value, std::string_view text)>& visit) const {
    order_.VisitFrom(from, visit);
  }

  /// How many entries have the value.
  std::uint32_t Count(ValueId value) const { return values_[value].count; }

  /// Appends the entries that have the value.
  void Collect(ValueId value, std::vector<EntryId>& entries) const;

 private:
  static constexpr std::uint32_t kNone = kNoValue;

  /// Doubly linked with the others of its value, singly with the others of its entry (or in the free list).
  struct Posting {
    EntryId entry = kNoEntry;
    std::uint32_t value = kNone;
    std::uint32_t previous = kNone;
    std::uint32_t next = kNone;
    std::uint32_t next_of_entry = kNone;
  };

  /// A text and before it, in one byte, its length.
  using Text = std::unique_ptr<char[]>;

  struct Value {
    std::uint32_t hash = 0;
    std::uint32_t count = 0;
    std::uint32_t first = kNone;
    std::uint32_t next_in_bucket = kNone;  ///< or in the free list
    Text text;
  };

  static std::size_t BytesOfValue(std::size_t text_size);
  static Text MakeText(std::string_view text);
  std::string_view TextOf(ValueId value) const;
  ValueId FindOrAddValue(const ValueKey& key);
  void RemoveValue(ValueId value);
  void GrowBuckets();
  std::size_t BucketOf(std::uint32_t hash) const { return hash & (buckets_.size() - 1); }

  std::deque<Posting> postings_;
  std::deque<Value> values_;
  ValueOrder order_;
  std::vector<std::uint32_t> buckets_;  ///< a power of two of them
  std::uint32_t free_posting_ = kNone;
  std::uint32_t free_value_ = kNone;
  std::size_t value_count_ = 0;
  std::size_t bytes_ = 0;
};

}  // namespace slp
