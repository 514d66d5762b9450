#include "suggestion.h"

#include <gtest/gtest.h>

namespace kelsd_tool {
namespace {

TEST(Suggestion, FindsTheClosestWord) {
  const std::vector<std::string> words = {"useScopes", "useDHCP", "MTU", "port", "find"};
  EXPECT_EQ(ClosestWord("usescopes", words), "useScopes");
  EXPECT_EQ(ClosestWord("USESCOPE", words), "useScopes");
  EXPECT_EQ(ClosestWord("usDHPC", words), "useDHCP");
  EXPECT_EQ(ClosestWord("fnid", words), "find");
  EXPECT_EQ(ClosestWord("mtu", words), "MTU");
  EXPECT_EQ(ClosestWord("m", words), std::nullopt);
  EXPECT_EQ(ClosestWord("", words), std::nullopt);
  EXPECT_EQ(ClosestWord("colour", words), std::nullopt);
  EXPECT_EQ(ClosestWord(std::string(65, 'u'), {std::string(65, 'u')}), std::nullopt);
  EXPECT_EQ(ClosestWord("port", {}), std::nullopt);
}

TEST(Suggestion, AllowsAThirdOfTheLettersAndNeverMoreThanThree) {
  EXPECT_EQ(ClosestWord("abcdexxx", {"abcdefgh"}), std::nullopt);
  EXPECT_EQ(ClosestWord("abcdefxx", {"abcdefgh"}), "abcdefgh");
  EXPECT_EQ(ClosestWord("abcdefghixxx", {"abcdefghijkl"}), "abcdefghijkl");
  EXPECT_EQ(ClosestWord("abcdefghxxxx", {"abcdefghijkl"}), std::nullopt);
}

}  // namespace
}  // namespace kelsd_tool
