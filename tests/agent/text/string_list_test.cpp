#include "text/string_list.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {
namespace {

using List = std::vector<std::string>;

TEST(SplitStringList, TrimsAndLeavesOutEmptyElements) {
  const struct {
    std::string text;
    List elements;
  } rows[] = {
      {"", {}},
      {",", {}},
      {" , \t,", {}},
      {",a", {"a"}},
      {"a,,b", {"a", "b"}},
      {"a,", {"a"}},
      {" default,tamro ", {"default", "tamro"}},
      {"SALES,DEFAULT", {"SALES", "DEFAULT"}},
      {"BLDG 32", {"BLDG 32"}},
      {"a\\2Cb,c", {"a\\2Cb", "c"}},
      {"a,A", {"a", "A"}},
      {Repeat(",", 100000) + "x", {"x"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SplitStringList(row.text), row.elements) << row.text.substr(0, 40);
    EXPECT_EQ(SplitStringList(JoinStringList(row.elements)), row.elements);
  }
}

TEST(JoinStringList, PutsCommasBetween) {
  EXPECT_EQ(JoinStringList({}), "");
  EXPECT_EQ(JoinStringList({"a"}), "a");
  EXPECT_EQ(JoinStringList({"a", "b c"}), "a,b c");
}

TEST(ListContains, ComparesAsSlpComparesStrings) {
  EXPECT_TRUE(ListContains({"tamro", "Bldg  32"}, " bldg 32"));
  EXPECT_FALSE(ListContains({"tamro"}, "tam"));
  EXPECT_FALSE(ListContains({}, ""));
}

TEST(ListRelations, HoldForShortAndLongLists) {
  List many;
  for (int i = 0; i < 20000; ++i) {
    many.push_back("Scope" + std::to_string(i));
  }
  EXPECT_TRUE(ListsIntersect({"DEFAULT", "TAMRO"}, {"tamro"}));
  EXPECT_FALSE(ListsIntersect({"DEFAULT"}, {"tamro"}));
  EXPECT_FALSE(ListsIntersect({}, {}));
  EXPECT_TRUE(ListsIntersect({"x", "scope19999"}, many));
  EXPECT_TRUE(ListsIntersect(many, {"x", "scope19999"}));
  EXPECT_FALSE(ListsIntersect({"x"}, many));

  EXPECT_TRUE(ListContainsAll({"DEFAULT", "TAMRO"}, {"tamro"}));
  EXPECT_FALSE(ListContainsAll({"tamro"}, {"DEFAULT", "TAMRO"}));
  EXPECT_TRUE(ListContainsAll({"tamro"}, {}));
  EXPECT_TRUE(ListContainsAll(many, many));
  EXPECT_FALSE(ListContainsAll(many, {"scope1", "y"}));

  EXPECT_EQ(ListUnion({"a", "b"}, {"B", "c", "C"}), (List{"a", "b", "c"}));
  EXPECT_EQ(ListUnion({"a", "a"}, {}), (List{"a", "a"}));
  EXPECT_EQ(ListUnion(many, many), many);
}

TEST(IsValidScope, RefusesReservedCharactersUnlessEscaped) {
  for (const char* scope : {"tamro", "BLDG 32", "a_b-c.d", "a\\2Cb", "a\\2ab", "\\3B\\2B", "caf\xC3\xA9"}) {
    EXPECT_TRUE(IsValidScope(scope)) << scope;
  }
  for (const std::string& scope :
       {std::string(),      std::string(" "),    std::string("a,b"),   std::string("a;b"),
        std::string("a+b"), std::string("a*"),   std::string("(a"),    std::string("a)"),
        std::string("a!"),  std::string("a<b"),  std::string("a=b"),   std::string("a>b"),
        std::string("a~"),  std::string("a\tb"), std::string("a\x7F"), WithNuls("a\0"),
        std::string("a\\"), std::string("a\\2"), std::string("a\\zz"), std::string("a\\41")}) {
    EXPECT_FALSE(IsValidScope(scope)) << scope;
  }
}

}  // namespace
}  // namespace slp
