#include "foundation/text_table.h"

#include <gtest/gtest.h>

namespace kelsd {
namespace {

enum EColour : int { none = 0, red = 1, blue = 5 };

const TextTable<EColour>& Colours() {
  static const auto& table = *new TextTable<EColour>({{none, ""}, {red, "red"}, {blue, "blue"}});
  return table;
}

TEST(TextTableTest, FindsTextsAndValues) {
  bool unknown = false;
  EXPECT_EQ(Colours().ToText(none), "");
  EXPECT_EQ(Colours().ToText(red), "red");
  EXPECT_EQ(Colours().ToText(blue), "blue");
  EXPECT_EQ(Colours().FromText("", &unknown), none);
  EXPECT_EQ(Colours().FromText("red", &unknown), red);
  EXPECT_EQ(Colours().FromText("blue", &unknown), blue);
  EXPECT_FALSE(unknown);
}

TEST(TextTableTest, FallsBackToTheValueZero) {
  EXPECT_EQ(Colours().ToText(static_cast<EColour>(2)), "");
  EXPECT_EQ(Colours().FromText("Red", nullptr), none);
  bool unknown = false;
  EXPECT_EQ(Colours().FromText("Red", &unknown), none);
  EXPECT_TRUE(unknown);
}

TEST(TextTableTest, NeverClearsTheFlag) {
  bool unknown = true;
  EXPECT_EQ(Colours().FromText("red", &unknown), red);
  EXPECT_TRUE(unknown);
}

}  // namespace
}  // namespace kelsd
