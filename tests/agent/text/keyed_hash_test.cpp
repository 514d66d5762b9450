#include "text/keyed_hash.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace slp {
namespace {

/// The key 00 01 .. 0F of the algorithm's published examples.
constexpr HashKey kPublishedKey{0x0706050403020100U, 0x0f0e0d0c0b0a0908U};

/// The bytes 00, 01, 02 and so on.
std::string Counted(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>(static_cast<unsigned char>(i));
  }
  return bytes;
}

TEST(KeyedHashTest, GivesThePublishedExamples) {
  constexpr std::uint64_t kPublished[] = {
      0xabac0158050fc4dcU, 0xc9f49bf37d57ca93U, 0x82cb9b024dc7d44dU, 0x8bf80ab8e7ddf7fbU, 0xcf75576088d38328U,
      0xdef9d52f49533b67U, 0xc50d2b50c59f22a7U, 0xd3927d989bb11140U, 0x369095118d299a8eU, 0x25a48eb36c063de4U,
      0x79de85ee92ff097fU, 0x70c118c1f94dc352U, 0x78a384b157b4d9a2U, 0x306f760c1229ffa7U, 0x605aa111c0f95d34U,
      0xd320d86d2a519956U, 0xcc4fdd1a7d908b66U, 0x9cf2689063dbd80cU};
  std::size_t size = 0;
  for (const std::uint64_t hash : kPublished) {
    EXPECT_EQ(KeyedHash(Counted(size), kPublishedKey), hash) << size;
    ++size;
  }
}

TEST(KeyedHashTest, DependsOnBothHalvesOfTheKey) {
  const std::set<std::uint64_t> hashes = {KeyedHash("text", {1, 2}), KeyedHash("text", {1, 3}),
                                          KeyedHash("text", {3, 2})};
  EXPECT_EQ(hashes.size(), 3U);
}

TEST(KeyedHashTest, AProcessKeepsItsKey) {
  EXPECT_EQ(ProcessHash("text"), ProcessHash(std::string("text")));
  EXPECT_NE(ProcessHash("text"), ProcessHash("texts"));
  EXPECT_EQ(TextHash{}("text"), static_cast<std::size_t>(ProcessHash("text")));
}

TEST(KeyedHashTest, TheProcessesKeyIsNoneThatOthersCouldKnow) {
  EXPECT_NE(ProcessHash("text"), KeyedHash("text", {}));
  EXPECT_NE(ProcessHash("text"), KeyedHash("text", kPublishedKey));
}

}  // namespace
}  // namespace slp
