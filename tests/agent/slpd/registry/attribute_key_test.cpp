#include "slpd/registry/attribute_key.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "text/keyed_hash.h"

namespace slp {
namespace {

AttributeValue Value(std::string_view raw) {
  return ParseAttributeValue(raw).value();
}

std::vector<ValueKey> KeysOf(std::string_view list) {
  return AttributeKeys(7, AttributeList::Parse(list).value());
}

TEST(AttributeKeyTest, EqualValuesHaveTheSameNormalForm) {
  const std::pair<const char*, const char*> equal[] = {
      {"Two  Words", " two words "}, {"10", "010"}, {"TRUE", "true"}, {"\\FF\\0A", "\\ff\\0a"}};
  for (const auto& [one, other] : equal) {
    EXPECT_EQ(ValueNormalForm(Value(one)), ValueNormalForm(Value(other))) << one;
  }
}

TEST(AttributeKeyTest, NormalFormsHaveTheOrderOfTheValues) {
  const std::vector<const char*> ascending[] = {
      {"-2147483648", "-300", "-1", "0", "1", "2", "10", "255", "256", "2147483647"},
      {"", "a", "A b", "ab", "b", "z\xC3\xA4"},
      {"\\FF\\00", "\\FF\\00\\00", "\\FF\\01", "\\FF\\7f", "\\FF\\80", "\\FF\\ff"}};
  for (const std::vector<const char*>& values : ascending) {
    for (std::size_t i = 1; i < values.size(); ++i) {
      EXPECT_LT(ValueNormalForm(Value(values[i - 1])), ValueNormalForm(Value(values[i]))) << values[i];
    }
  }
}

TEST(AttributeKeyTest, TypesTagsAndTypesOfValuesAreKeptApart) {
  const ValueKey key = AttributeKey(7, "a", Value("1"));
  EXPECT_EQ(AttributeKey(7, "a", Value("01")), key);
  EXPECT_NE(AttributeKey(8, "a", Value("1")), key);
  EXPECT_NE(AttributeKey(7, "b", Value("1")), key);
  EXPECT_NE(AttributeKey(7, "a", Value("\\FF\\01")), key);
}

TEST(AttributeKeyTest, EveryAttributeHasAKeyAndEveryValueOne) {
  EXPECT_TRUE(KeysOf("").empty());
  EXPECT_EQ(KeysOf("k").size(), 1U);
  EXPECT_EQ(KeysOf("(a=1,01,2),(b=x,X),k").size(), 4U);
  const std::vector<ValueKey> keys = KeysOf("(A=x)");
  EXPECT_EQ(keys, std::vector<ValueKey>{AttributeKey(7, "a", Value("X"))});
  EXPECT_TRUE(keys.front().text.starts_with(AttributeKeyStart(7, "a")));
}

TEST(AttributeKeyTest, HashesAreThoseOfTheProcess) {
  const std::uint64_t hash = ProcessHash(AttributeKeyStart(7, "a") + ValueNormalForm(Value("X")));
  EXPECT_EQ(AttributeKey(7, "a", Value("X")).hash, static_cast<std::uint32_t>(hash ^ (hash >> 32)));
}

TEST(AttributeKeyTest, LongTextsAreCutAndStillToldApart) {
  const std::string beginning(200, 'v');
  const ValueKey one = AttributeKey(7, "a", Value(beginning + "1"));
  const ValueKey other = AttributeKey(7, "a", Value(beginning + "2"));
  EXPECT_EQ(one.text, other.text);
  EXPECT_EQ(one.text.size(), kLongestKeyText);
  EXPECT_NE(one.hash, other.hash);
  EXPECT_EQ(AttributeKey(7, std::string(200, 't'), Value("1")).text.size(), kLongestKeyText);
}

// Thousands of values below one long tag have as many keys.
TEST(AttributeKeyTest, KeysHoldNoMoreMemoryThanTheirText) {
  const auto attributes = AttributeList::Parse("(" + std::string(30'000, 't') + "=1,2,3)");
  ASSERT_TRUE(attributes);
  const std::vector<ValueKey> keys = AttributeKeys(7, *attributes);
  ASSERT_EQ(keys.size(), 3U);
  for (const ValueKey& key : keys) {
    EXPECT_LE(key.text.capacity(), kLongestKeyText);
  }
}

}  // namespace
}  // namespace slp
