#include "text/attributes.h"

#include <gtest/gtest.h>

#include "agent/text/mutation.h"
#include "agent/text/outcome.h"
#include "agent/text/unlimited.h"

namespace slp {

void PrintTo(const AttributeList& list, std::ostream* out) {
  *out << list.ToString();
}

namespace {

AttributeList ListOf(std::string_view text) {
  auto list = AttributeList::Parse(text);
  EXPECT_TRUE(list.ok()) << text;
  return list ? std::move(list).value() : AttributeList();
}

AttributeValue TextValue(std::string content, std::string raw) {
  return {std::move(content), std::move(raw)};
}

TEST(AttributeListParse, ReadsTagsAndTypedValues) {
  const std::vector<Attribute> expected = {
      {"x-version", {TextValue("", "")}},
      {"x-ip-addresses", {TextValue("10.0.0.1,10.0.0.2", "10.0.0.1\\2C10.0.0.2")}},
      {"Ports", {{80, "80"}, {-1, "-1"}}},
      {"secure", {{true, "TRUE"}}},
      {"key", {{Opaque{0, 0xFF}, "\\FF\\00\\ff"}}},
      {"x-BUSY", {}},
      {"names", {TextValue("a", "a"), TextValue(" b c ", " b c ")}},
  };
  EXPECT_EQ(ListOf("(x-version=),(x-ip-addresses=10.0.0.1\\2C10.0.0.2),(Ports=80,-1),(secure=TRUE),"
                   "(key=\\FF\\00\\ff),x-BUSY,(names=a, b c )")
                .items(),
            expected);
}

TEST(AttributeListParse, WritesBackWhatItRead) {
  for (const char* text : {
           "",
           "(a=)",
           "(a=1,2,3)",
           "keyword",
           "a,b,c",
           "(x=33),(y=FOO)",
           "(protocols=http,LPR),(resolution=res-600,other),x-OK,x-BUSY",
           "(location-description=13te Etage),(resolution=res-600)",
           "(x-ip-addresses=10.0.0.1\\2c10.0.0.2)",
           "(a\\2Cb=1)",
           "(a=x*y_z)",
           "(key=\\ff\\00\\01)",
           "(caf\xC3\xA9=\xC3\xBC)",
           "(a=\x80\xFF)",
           "(a= padded )",
           "(some bob I know=1)",
           "(a=true,FALSE)",
       }) {
    EXPECT_EQ(ListOf(text).ToString(), text);
    EXPECT_EQ(ListOf(ListOf(text).ToString()), ListOf(text)) << text;
  }
}

TEST(AttributeListParse, SkipsBlanksAndTakesBracketsAroundAKeyword) {
  EXPECT_EQ(ListOf("  ").ToString(), "");
  EXPECT_EQ(ListOf(" ( a =1) , b ,(c)").ToString(), "(a=1),b,c");
}

TEST(AttributeListParse, RefusesWhatCouldNotBeReadAgain) {
  const std::string rows[] = {
      "(a=x=y)",
      "(a_b=1)",
      "(a=x!y)",
      "(a=1)(b=2)",
      "(a=,1)",
      "(a=1,)",
      "(a=, )",
      "(a=x, )",
      "(a=x<y)",
      "(a=x>y)",
      "(a=x~y)",
      "(a=x(y)",
      "(a=x)y)",
      "(a=\t)",
      "(a=x\ny)",
      "(a=x\x7Fy)",
      WithNuls("(a=x\0y)"),
      WithNuls("a\0"),
      "(a=\\zz)",
      "(a=x\\2)",
      "(a=x\\)",
      "(a=x\\",
      "(a=x\\41)",
      "(a=\\FF)",
      "(a=\\FF\\00x)",
      "(a=x\\FF\\00)",
      "(x=4,true,sue,\\ff\\00\\00)",
      "(x=4,sue)",
      "(x=true,sue)",
      "(a=1),(A=2)",
      "a,a",
      "a,(A=1)",
      "(=1)",
      "( =1)",
      "()",
      "(a*=1)",
      "a*",
      "(a,b=1)",
      "(a",
      "(a=1",
      "a)",
      "(a=1))",
      "((a=1))",
      ",",
      ",a",
      "a,,b",
      "a,",
      "a=1",
      "(a=1) x",
      "(a=1),\t(b=2)",
      "(a\\5Fb=1)",
      "(a\\0Ab=1)",
      Repeat("(", 100000),
      Repeat("(a=", 50000),
      Repeat("\\", 100000),
      "(a=" + Repeat("\\2", 50000) + ")",
      Repeat(",", 100000),
  };
  for (const std::string& row : rows) {
    EXPECT_EQ(ValueOf(AttributeList::Parse(row)), std::nullopt) << row.substr(0, 40);
  }
}

TEST(AttributeListFind, ComparesTagsAsStrings) {
  const AttributeList list = ListOf("(x-Version=1),b,(some  Bob=2),(a\\2Cb=3)");
  for (const auto& [tag, index] : {std::pair{"X-VERSION", 0}, {" b ", 1}, {"SOME bob", 2}, {"a,b", 3}}) {
    EXPECT_EQ(list.Find(tag), &list.items()[static_cast<std::size_t>(index)]) << tag;
  }
  EXPECT_EQ(list.Find("x"), nullptr);
  EXPECT_EQ(list.Find(""), nullptr);
  EXPECT_EQ(AttributeList().Find("x"), nullptr);
}

TEST(AttributeListMerge, ReplacesAndAdds) {
  AttributeList list = ListOf("(A=1),(B=2),(C=3)");
  list.Merge(ListOf("(C=30),(D=40)"));
  EXPECT_EQ(list, ListOf("(A=1),(B=2),(C=30),(D=40)"));
  list.Merge(ListOf("(0=x),a"));
  EXPECT_EQ(list, ListOf("a,(B=2),(C=30),(D=40),(0=x)"));
  EXPECT_TRUE(list.Find("A")->IsKeyword());
  EXPECT_EQ(list.Find("0")->values, std::vector{TextValue("x", "x")});
}

TEST(AttributeListSelect, TakesMatchingTagsInTheOrderOfTheList) {
  const AttributeList list = ListOf("(Name=Igore),(protocols=http,LPR),(resolution=res-600),x-OK,x-BUSY");
  EXPECT_EQ(list.Select(TagPatterns({}), Unlimited()), list);
  EXPECT_EQ(list.Select(TagPatterns({"x-*", "resolution", "protocol"}), Unlimited()),
            ListOf("(resolution=res-600),x-OK,x-BUSY"));
  EXPECT_EQ(list.Select(TagPatterns({"*O*"}), Unlimited()),
            ListOf("(protocols=http,LPR),(resolution=res-600),x-OK"));
  EXPECT_EQ(list.Select(TagPatterns({"*"}), Unlimited()), list);
  EXPECT_EQ(list.Select(TagPatterns({"none"}), Unlimited()), AttributeList());
  EXPECT_EQ(list.Select(TagPatterns({"a\\"}), Unlimited()), AttributeList());
}

TEST(AttributeListRemoveMatching, LeavesTheOthers) {
  AttributeList list = ListOf("(Name=Igore),(protocols=http,LPR),(resolution=res-600),x-OK,x-BUSY");
  list.RemoveMatching(TagPatterns({"X-*", "name"}), Unlimited());
  EXPECT_EQ(list, ListOf("(protocols=http,LPR),(resolution=res-600)"));
  EXPECT_EQ(list.Find("name"), nullptr);
  EXPECT_EQ(list.Find("Resolution")->values, std::vector{TextValue("res-600", "res-600")});
  list.RemoveMatching(TagPatterns({}), Unlimited());
  EXPECT_EQ(list, ListOf("(protocols=http,LPR),(resolution=res-600)"));
  list.RemoveMatching(TagPatterns({"*"}), Unlimited());
  EXPECT_TRUE(list.empty());
}

TEST(AttributeListParse, TakesManyAttributesAndFindsDuplicatesAmongThem) {
  constexpr int kCount = 10000;
  std::string text;
  for (int i = 0; i < kCount; ++i) {
    text += "(tag" + std::to_string(i * 7919 % kCount) + "=" + std::to_string(i) + "),";
  }
  EXPECT_EQ(ValueOf(AttributeList::Parse(text + "TAG500")), std::nullopt);
  const AttributeList list = ListOf(text + "last");
  EXPECT_EQ(list.items().size(), kCount + 1u);
  EXPECT_EQ(list.Find("tag7919")->values, (std::vector<AttributeValue>{{1, "1"}}));
  AttributeList merged = list;
  merged.Merge(list);
  EXPECT_EQ(merged, list);
}

TEST(RawAttributeValue, GivesTheTextAsItStands) {
  const struct {
    std::string list;
    std::string tag;
    std::optional<std::string> value;
  } rows[] = {
      {"(x-a=a\\2Cb)", "x-a", "a\\2Cb"},
      {"(x-a=a\\2Cb)", "X-A", "a\\2Cb"},
      {"(a=1,2),(b=3)", "a", "1,2"},
      {"(a=1,2),(b=3)", "b", "3"},
      {"(a=)", "a", ""},
      {"(a)", "a", ""},
      {"a", "a", ""},
      {"b,a", "A", ""},
      {"(a= x )", " a ", " x "},
      {" ( a =x), b", "a", "x"},
      {"(a\\2Cb=1)", "a,b", "1"},
      {"(a_b=x=y!z)", "a_b", "x=y!z"},
      {"(a=\\zz)", "a", "\\zz"},
      {"(a=1),(a=2)", "a", "1"},
      {"a,,b", "b", ""},
      {"(a=1)", "b", std::nullopt},
      {"", "a", std::nullopt},
      {"", "", std::nullopt},
      {"(=1)", "", std::nullopt},
      {"(a=1", "a", std::nullopt},
      {"(a=1))", "a", std::nullopt},
      {"(a=1)(b=2)", "a", std::nullopt},
      {"(a=1)b", "a", std::nullopt},
      {"(a=(1))", "a", std::nullopt},
      {"a(b=1)", "a", std::nullopt},
      {"(a=1),(b", "a", std::nullopt},
      {Repeat("(a=1),", 50000) + "z", "z", ""},
      {Repeat("(", 100000), "a", std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(RawAttributeValue(row.list, row.tag)), row.value)
        << row.list.substr(0, 40) << ' ' << row.tag;
  }
}

TEST(AttributeListParse, AnyMutationEitherFailsOrIsReadAgainAlike) {
  const std::string seeds[] = {"(x-version=),(x-ip-addresses=10.0.0.1\\2C10.0.0.2),x-BUSY",
                               "(a=1,2,3),(b=true),c", "(key=\\FF\\00\\01),(s=Some  Text,b)",
                               "(a\\2Cb=\\5C\\28)"};
  Mutator mutator(2608, WithNuls("(),=\\ ab12cfF-*_!\0\t\x7F\x80\xFF"));
  int parsed = 0;
  for (int round = 0; round < 50000; ++round) {
    const std::string text = mutator.Mutate(seeds[mutator.Below(std::size(seeds))]);
    const auto list = AttributeList::Parse(text);
    if (!list) {
      ASSERT_EQ(list.error(), Error::kParseError);
      continue;
    }
    ++parsed;
    const auto again = AttributeList::Parse(list->ToString());
    ASSERT_TRUE(again.ok()) << text;
    ASSERT_EQ(*again, *list) << text;
    ASSERT_EQ(again->ToString(), list->ToString()) << text;
    for (const Attribute& attribute : list->items()) {
      ASSERT_EQ(list->Find(attribute.tag), &attribute) << text;
      ASSERT_TRUE(RawAttributeValue(text, attribute.tag).ok()) << text;
    }
  }
  EXPECT_GT(parsed, 1000);
}

}  // namespace
}  // namespace slp
