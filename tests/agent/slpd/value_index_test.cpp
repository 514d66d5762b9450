#include "slpd/value_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

namespace slp {
namespace {

using ::testing::UnorderedElementsAre;

std::vector<EntryId> Under(const ValueIndex& index, std::uint32_t key) {
  std::vector<EntryId> entries;
  index.Collect(key, entries);
  EXPECT_EQ(entries.size(), index.Count(key));
  return entries;
}

TEST(ValueIndexTest, FindsTheEntriesOfAKeyAlone) {
  ValueIndex index;
  index.Add(1, {10, 20});
  index.Add(2, {20, 30});
  EXPECT_THAT(Under(index, 10), UnorderedElementsAre(1));
  EXPECT_THAT(Under(index, 20), UnorderedElementsAre(1, 2));
  EXPECT_THAT(Under(index, 30), UnorderedElementsAre(2));
  EXPECT_THAT(Under(index, 40), UnorderedElementsAre());
}

TEST(ValueIndexTest, KeysOfTheSameBucketAreKeptApart) {
  ValueIndex index;
  index.Add(1, {5});
  const ValueIndex::Chain second = index.Add(2, {5 + 16});
  index.Add(3, {5 + 32});
  index.Remove(second);
  EXPECT_THAT(Under(index, 5), UnorderedElementsAre(1));
  EXPECT_THAT(Under(index, 5 + 16), UnorderedElementsAre());
  EXPECT_THAT(Under(index, 5 + 32), UnorderedElementsAre(3));
}

TEST(ValueIndexTest, AnEntryWithoutKeysLeavesNothing) {
  ValueIndex index;
  const ValueIndex::Chain chain = index.Add(1, {});
  EXPECT_EQ(chain, ValueIndex::kNoChain);
  index.Remove(chain);
  EXPECT_EQ(index.Count(0), 0U);
}

TEST(ValueIndexTest, AgreesWithAPlainMapThroughManyChanges) {
  std::mt19937 random(1);
  ValueIndex index;
  std::map<std::uint32_t, std::set<EntryId>> expected;
  std::map<EntryId, std::pair<ValueIndex::Chain, std::set<std::uint32_t>>> live;
  for (int step = 0; step < 20'000; ++step) {
    const EntryId entry = random() % 500;
    if (const auto found = live.find(entry); found != live.end()) {
      index.Remove(found->second.first);
      for (const std::uint32_t key : found->second.second) {
        expected[key].erase(entry);
      }
      live.erase(found);
    } else {
      std::set<std::uint32_t> keys;
      for (std::uint32_t i = random() % 6; i != 0; --i) {
        keys.insert(random() % 300 * 7919U);
      }
      live[entry] = {index.Add(entry, {keys.begin(), keys.end()}), keys};
      for (const std::uint32_t key : keys) {
        expected[key].insert(entry);
      }
    }
  }
  for (const auto& [key, entries] : expected) {
    const std::vector<EntryId> found = Under(index, key);
    EXPECT_EQ(std::set<EntryId>(found.begin(), found.end()), entries) << key;
  }
}

}  // namespace
}  // namespace slp
