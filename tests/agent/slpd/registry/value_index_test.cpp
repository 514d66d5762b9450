#include "slpd/registry/value_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

ValueKey Key(std::uint32_t hash) {
  return {hash, std::to_string(hash)};
}

std::vector<EntryId> Under(const ValueIndex& index, const ValueKey& key) {
  std::vector<EntryId> entries;
  if (const ValueIndex::ValueId value = index.Find(key); value != ValueIndex::kNoValue) {
    index.Collect(value, entries);
    EXPECT_EQ(entries.size(), index.Count(value));
    EXPECT_FALSE(entries.empty());
  }
  return entries;
}

std::vector<EntryId> Under(const ValueIndex& index, std::uint32_t hash) {
  return Under(index, Key(hash));
}

std::vector<std::string> TextsFrom(const ValueIndex& index, std::string_view from) {
  std::vector<std::string> texts;
  index.VisitFrom(from, [&](ValueIndex::ValueId, std::string_view text) {
    texts.emplace_back(text);
    return true;
  });
  return texts;
}

TEST(ValueIndexTest, FindsTheEntriesOfAKeyAlone) {
  ValueIndex index;
  index.Add(1, {Key(10), Key(20)});
  index.Add(2, {Key(20), Key(30)});
  EXPECT_THAT(Under(index, 10), UnorderedElementsAre(1));
  EXPECT_THAT(Under(index, 20), UnorderedElementsAre(1, 2));
  EXPECT_THAT(Under(index, 30), UnorderedElementsAre(2));
  EXPECT_THAT(Under(index, 40), UnorderedElementsAre());
}

TEST(ValueIndexTest, KeysOfTheSameBucketAreKeptApart) {
  ValueIndex index;
  index.Add(1, {Key(5)});
  const ValueIndex::Chain second = index.Add(2, {Key(5 + 16)});
  index.Add(3, {Key(5 + 32)});
  index.Remove(second);
  EXPECT_THAT(Under(index, 5), UnorderedElementsAre(1));
  EXPECT_THAT(Under(index, 5 + 16), UnorderedElementsAre());
  EXPECT_THAT(Under(index, 5 + 32), UnorderedElementsAre(3));
}

TEST(ValueIndexTest, TextsTellApartWhatHasTheSameHash) {
  ValueIndex index;
  const ValueIndex::Chain first = index.Add(1, {{5, "a"}, {5, "b"}});
  index.Add(2, {{5, "b"}, {6, "b"}});
  EXPECT_THAT(Under(index, {5, "a"}), UnorderedElementsAre(1));
  EXPECT_THAT(Under(index, {5, "b"}), UnorderedElementsAre(1, 2));
  EXPECT_THAT(Under(index, {6, "b"}), UnorderedElementsAre(2));
  index.Remove(first);
  EXPECT_THAT(Under(index, {5, "a"}), UnorderedElementsAre());
  EXPECT_THAT(Under(index, {5, "b"}), UnorderedElementsAre(2));
}

TEST(ValueIndexTest, ShowsTheTextsOfWhatIsThereInOrder) {
  ValueIndex index;
  const std::string longest(255, 'z');
  const ValueIndex::Chain first = index.Add(1, {{1, "b"}, {2, longest}, {3, ""}});
  index.Add(2, {{1, "b"}, {4, "a"}});
  EXPECT_THAT(TextsFrom(index, ""), ElementsAre("", "a", "b", longest));
  EXPECT_THAT(TextsFrom(index, "b"), ElementsAre("b", longest));
  index.Remove(first);
  EXPECT_THAT(TextsFrom(index, ""), ElementsAre("a", "b"));
}

TEST(ValueIndexTest, AnEntryWithoutKeysLeavesNothing) {
  ValueIndex index;
  const ValueIndex::Chain chain = index.Add(1, {});
  EXPECT_EQ(chain, ValueIndex::kNoChain);
  index.Remove(chain);
  EXPECT_THAT(TextsFrom(index, ""), ElementsAre());
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
      std::vector<ValueKey> added;
      std::transform(keys.begin(), keys.end(), std::back_inserter(added), Key);
      live[entry] = {index.Add(entry, added), keys};
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
