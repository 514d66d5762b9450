// An equality index: from a 32-bit key to the entries that were added under it. Small on purpose, a registry
// of many services holds several postings for each. Two values may share a key, so what is found is a
// candidate only. One thread at a time.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

namespace slp {

/// The place of an entry in the store.
using EntryId = std::uint32_t;
inline constexpr EntryId kNoEntry = 0xFFFFFFFF;

class ValueIndex {
 public:
  /// The postings of one entry, to be handed back when it goes.
  using Chain = std::uint32_t;
  static constexpr Chain kNoChain = 0xFFFFFFFF;

  ValueIndex();

  /// Adds `entry` under `keys`, which are all different.
  Chain Add(EntryId entry, const std::vector<std::uint32_t>& keys);

  /// Takes back what Add returned. Takes as long as the chain is, however many others share its keys.
  void Remove(Chain chain);

  /// How many postings `chain` has; takes as long.
  std::size_t Length(Chain chain) const;

  /// How many postings there are in all.
  std::size_t size() const { return posting_count_; }

  /// How many entries stand under `key`.
  std::uint32_t Count(std::uint32_t key) const;

  /// Appends the entries under `key`.
  void Collect(std::uint32_t key, std::vector<EntryId>& entries) const;

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// Doubly linked with the others of its value, singly with the others of its entry (or in the free list).
  struct Posting {
    EntryId entry = kNoEntry;
    std::uint32_t value = kNone;
    std::uint32_t previous = kNone;
    std::uint32_t next = kNone;
    std::uint32_t next_of_entry = kNone;
  };

  struct Value {
    std::uint32_t key = 0;
    std::uint32_t count = 0;
    std::uint32_t first = kNone;
    std::uint32_t next_in_bucket = kNone;  ///< or in the free list
  };

  std::uint32_t FindValue(std::uint32_t key) const;
  std::uint32_t FindOrAddValue(std::uint32_t key);
  void RemoveValue(std::uint32_t value);
  void GrowBuckets();
  std::size_t BucketOf(std::uint32_t key) const { return key & (buckets_.size() - 1); }

  std::deque<Posting> postings_;
  std::deque<Value> values_;
  std::vector<std::uint32_t> buckets_;  ///< a power of two of them
  std::uint32_t free_posting_ = kNone;
  std::uint32_t free_value_ = kNone;
  std::size_t value_count_ = 0;
  std::size_t posting_count_ = 0;
};

}  // namespace slp
