#include "slpd/value_index.h"

namespace slp {

ValueIndex::ValueIndex() : buckets_(16, kNone) {}

ValueIndex::Chain ValueIndex::Add(EntryId entry, const std::vector<std::uint32_t>& keys) {
  Chain chain = kNoChain;
  for (const std::uint32_t key : keys) {
    const std::uint32_t value_id = FindOrAddValue(key);
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
    ++posting_count_;
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
    --posting_count_;
    posting.next_of_entry = free_posting_;
    free_posting_ = chain;
    chain = next;
  }
}

std::size_t ValueIndex::Length(Chain chain) const {
  std::size_t length = 0;
  for (; chain != kNoChain; chain = postings_[chain].next_of_entry) {
    ++length;
  }
  return length;
}

std::uint32_t ValueIndex::Count(std::uint32_t key) const {
  const std::uint32_t value = FindValue(key);
  return value == kNone ? 0 : values_[value].count;
}

void ValueIndex::Collect(std::uint32_t key, std::vector<EntryId>& entries) const {
  const std::uint32_t value = FindValue(key);
  if (value == kNone) {
    return;
  }
  for (std::uint32_t id = values_[value].first; id != kNone; id = postings_[id].next) {
    entries.push_back(postings_[id].entry);
  }
}

std::uint32_t ValueIndex::FindValue(std::uint32_t key) const {
  std::uint32_t value = buckets_[BucketOf(key)];
  while (value != kNone && values_[value].key != key) {
    value = values_[value].next_in_bucket;
  }
  return value;
}

std::uint32_t ValueIndex::FindOrAddValue(std::uint32_t key) {
  if (const std::uint32_t found = FindValue(key); found != kNone) {
    return found;
  }
  if (value_count_ >= buckets_.size()) {
    GrowBuckets();
  }
  std::uint32_t id = free_value_;
  if (id == kNone) {
    id = static_cast<std::uint32_t>(values_.size());
    values_.emplace_back();
  } else {
    free_value_ = values_[id].next_in_bucket;
  }
  std::uint32_t& bucket = buckets_[BucketOf(key)];
  values_[id] = Value{key, 0, kNone, bucket};
  bucket = id;
  ++value_count_;
  return id;
}

void ValueIndex::RemoveValue(std::uint32_t value) {
  std::uint32_t* link = &buckets_[BucketOf(values_[value].key)];
  while (*link != value) {
    link = &values_[*link].next_in_bucket;
  }
  *link = values_[value].next_in_bucket;
  values_[value] = Value{0, 0, kNone, free_value_};
  free_value_ = value;
  --value_count_;
}

void ValueIndex::GrowBuckets() {
  std::vector<std::uint32_t> old(buckets_.size() * 2, kNone);
  old.swap(buckets_);
  for (std::uint32_t value : old) {
    while (value != kNone) {
      const std::uint32_t next = values_[value].next_in_bucket;
      std::uint32_t& bucket = buckets_[BucketOf(values_[value].key)];
      values_[value].next_in_bucket = bucket;
      bucket = value;
      value = next;
    }
  }
}

}  // namespace slp
