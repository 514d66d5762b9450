#include "slpd/registry/attribute_merge.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

AttributeList List(std::string_view text) {
  Result<AttributeList> list = AttributeList::Parse(text);
  EXPECT_TRUE(list) << text;
  return list ? *list : AttributeList();
}

struct MergeCase {
  const char* first;
  const char* second;
  const char* merged;
};

TEST(AttributeMergeTest, EachTagAndValueComesOnce) {
  const MergeCase cases[] = {
      {"", "", ""},
      {"(a=1)", "(b=2)", "(a=1),(b=2)"},
      {"(A=a a,b)", "(a=A   A,B)", "(A=a a,b)"},
      {"(a=1)", "(a=01,2)", "(a=1,2)"},
      {"(a=true)", "(a=TRUE)", "(a=true)"},
      {"(a=x\\2cy)", "(a=X\\2CY)", "(a=x\\2cy)"},
      {"x-ok", "X-OK,x-busy", "x-ok,x-busy"},
      {"a", "(a=1)", "(a=1)"},
      {"(a=1)", "a", "(a=1)"},
      {"(a=)", "(a=)", "(a=)"},
      {"(a=)", "(a=1)", "(a=1)"},
      {"(a=1)", "(a=)", "(a=1)"},
      {"(a\\2cb=1)", "x\\28y", "(a\\2Cb=1),x\\28y"},
      {"(a=1)", "(a=\\FF\\01)", "(a=1,\\FF\\01)"},
  };
  for (const MergeCase& row : cases) {
    AttributeMerge merge(1000);
    merge.Add(List(row.first));
    merge.Add(List(row.second));
    EXPECT_EQ(merge.ToString(), row.merged);
    EXPECT_FALSE(merge.full());
  }
}

struct LimitCase {
  std::size_t limit;
  const char* merged;
  bool full;
};

TEST(AttributeMergeTest, StopsBeforeAnAttributeOrValueThatDoesNotFit) {
  const LimitCase cases[] = {
      {0, "", true},
      {4, "", true},
      {5, "(a=1)", true},
      {9, "(a=1)", true},
      {8, "(a=1)", true},
      {10, "(a=1)", true},
      {11, "(a=1),(b=2)", true},
      {12, "(a=1),(b=2)", true},
      {13, "(a=1),(b=2,3)", true},
      {15, "(a=1),(b=2,3),c", false},
  };
  for (const LimitCase& row : cases) {
    AttributeMerge merge(row.limit);
    merge.Add(List("(a=1)"));
    merge.Add(List("(b=2,3),c"));
    EXPECT_EQ(merge.ToString(), row.merged) << row.limit;
    EXPECT_EQ(merge.full(), row.full) << row.limit;
    EXPECT_LE(merge.ToString().size(), row.limit);
  }
}

}  // namespace
}  // namespace slp
