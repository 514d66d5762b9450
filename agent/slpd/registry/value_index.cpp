#include "slpd/registry/value_index.h"

#include <algorithm>

#include "slpd/registry/heap_block.h"

namespace slp {

ValueIndex::ValueIndex() : order_([this](ValueId value) { return TextOf(value); }), buckets_(16, kNone) {}

ValueIndex::Chain ValueIndex::Add(EntryId entry, const std::vector<ValueKey>& keys) {
  Chain chain = kNoChain;
  for (const ValueKey& key : keys) {
    const ValueId value_id = FindOrAddValue(key);
    std::uint32_t id = free_posting_;
    if (id == kNone) {
      id = static_cast<std::uint32_t>(postings_.size());
      postings_.emplace_back();
    } else {
      free_posting_ = postings_[id].next_of_entry;
    }
    Value& value = values_[value_id];
    postings_[id] = Posting{entry, value_id, kNone, value.first, chain};
    if (value.first != kNone) {
      postings_[value.first].previous = id;
    }
    value.first = id;
    ++value.count;
    bytes_ += sizeof(Posting);
    chain = id;
  }
  return chain;
}

void ValueIndex::Remove(Chain chain) {
  while (chain != kNoChain) {
    Posting& posting = postings_[chain];
    Value& value = values_[posting.value];
    if (posting.previous == kNone) {
      value.first = posting.next;
    } else {
      postings_[posting.previous].next = posting.next;
    }
    if (posting.next != kNone) {
      postings_[posting.next].previous = posting.previous;
    }
    if (--value.count == 0) {
      RemoveValue(posting.value);
    }
    const Chain next = posting.next_of_entry;
    posting = Posting{};
    bytes_ -= sizeof(Posting);
    posting.next_of_entry = free_posting_;
    free_posting_ = chain;
    chain = next;
  }
}

std::size_t ValueIndex::BytesOfKey(std::size_t text_size) {
  return sizeof(Posting) + BytesOfValue(text_size);
}

std::size_t ValueIndex::BytesOf(Chain chain) const {
  std::size_t bytes = 0;
  for (; chain != kNoChain; chain = postings_[chain].next_of_entry) {
    const ValueId value = postings_[chain].value;
    bytes += values_[value].count == 1 ? BytesOfKey(TextOf(value).size()) : sizeof(Posting);
  }
  return bytes;
}

ValueIndex::ValueId ValueIndex::Find(const ValueKey& key) const {
  ValueId value = buckets_[BucketOf(key.hash)];
  while (value != kNone && (values_[value].hash != key.hash || TextOf(value) != key.text)) {
    value = values_[value].next_in_bucket;
  }
  return value;
}

void ValueIndex::Collect(ValueId value, std::vector<EntryId>& entries) const {
  for (std::uint32_t id = values_[value].first; id != kNone; id = postings_[id].next) {
    entries.push_back(postings_[id].entry);
  }
}

// A bucket has room for one value and up to one more, and so has the order of the values.
std::size_t ValueIndex::BytesOfValue(std::size_t text_size) {
  constexpr std::size_t kBucketAndOrder = 4 * sizeof(ValueId);
  return sizeof(Value) + HeapBlock(1 + text_size) + kBucketAndOrder;
}

ValueIndex::Text ValueIndex::MakeText(std::string_view text) {
  Text made = std::make_unique_for_overwrite<char[]>(1 + text.size());
  made[0] = static_cast<char>(static_cast<unsigned char>(text.size()));
  std::copy(text.begin(), text.end(), made.get() + 1);
  return made;
}

std::string_view ValueIndex::TextOf(ValueId value) const {
  const char* const text = values_[value].text.get();
  return {text + 1, static_cast<unsigned char>(text[0])};
}

ValueIndex::ValueId ValueIndex::FindOrAddValue(const ValueKey& key) {
  if (const ValueId found = Find(key); found != kNone) {
    return found;
  }
  if (value_count_ >= buckets_.size()) {
    GrowBuckets();
  }
  ValueId id = free_value_;
  if (id == kNone) {
    id = static_cast<ValueId>(values_.size());
    values_.emplace_back();
  } else {
    free_value_ = values_[id].next_in_bucket;
  }
  std::uint32_t& bucket = buckets_[BucketOf(key.hash)];
  values_[id] = Value{key.hash, 0, kNone, bucket, MakeText(key.text)};
  bucket = id;
  order_.Insert(id);
  ++value_count_;
  bytes_ += BytesOfValue(key.text.size());
  return id;
}

void ValueIndex::RemoveValue(ValueId value) {
  bytes_ -= BytesOfValue(TextOf(value).size());
  order_.Erase(value);
  std::uint32_t* link = &buckets_[BucketOf(values_[value].hash)];
  while (*link != value) {
    link = &values_[*link].next_in_bucket;
  }
  *link = values_[value].next_in_bucket;
  values_[value] = Value{0, 0, kNone, free_value_, nullptr};
  free_value_ = value;
  --value_count_;
}

void ValueIndex::GrowBuckets() {
  std::vector<std::uint32_t> old(buckets_.size() * 2, kNone);
  old.swap(buckets_);
  for (ValueId value : old) {
    while (value != kNone) {
      const ValueId next = values_[value].next_in_bucket;
      std::uint32_t& bucket = buckets_[BucketOf(values_[value].hash)];
      values_[value].next_in_bucket = bucket;
      bucket = value;
      value = next;
    }
  }
}

}  // namespace slp
