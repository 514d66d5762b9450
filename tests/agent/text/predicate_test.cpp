#include "text/predicate.h"

#include <gtest/gtest.h>

#include "agent/text/mutation.h"
#include "agent/text/outcome.h"
#include "agent/text/unlimited.h"
#include "text/escape.h"

namespace slp {
namespace {

using Kind = PredicateNode::Kind;

std::string WriteOperand(const PredicateNode& node) {
  if (node.pieces.size() == 1) {
    return node.value.raw;
  }
  std::string text;
  for (const std::string& piece : node.pieces) {
    text += (&piece == &node.pieces.front() ? "" : "*");
    for (const char c : piece) {
      text += c == '*' ? "\\2a" : Escape(std::string_view(&c, 1));
    }
  }
  return text;
}

/// The tree as a predicate again.
std::string Write(const PredicateNode& node) {
  switch (node.kind) {
    case Kind::kAnd:
    case Kind::kOr:
    case Kind::kNot: {
      std::string text = node.kind == Kind::kAnd ? "(&" : node.kind == Kind::kOr ? "(|" : "(!";
      for (const PredicateNode& child : node.children) {
        text += Write(child);
      }
      return text + ")";
    }
    case Kind::kPresent:
      return "(" + Escape(node.tag) + "=*)";
    case Kind::kEqual:
      return "(" + Escape(node.tag) + "=" + WriteOperand(node) + ")";
    case Kind::kApproximate:
      return "(" + Escape(node.tag) + "~=" + WriteOperand(node) + ")";
    case Kind::kLessOrEqual:
      return "(" + Escape(node.tag) + "<=" + WriteOperand(node) + ")";
    case Kind::kGreaterOrEqual:
      return "(" + Escape(node.tag) + ">=" + WriteOperand(node) + ")";
  }
  return "?";
}

/// The predicate in its own words, none when it does not parse.
std::optional<std::string> Rewritten(std::string_view text) {
  const auto predicate = Predicate::Parse(text);
  if (!predicate) {
    EXPECT_EQ(predicate.error(), Error::kParseError);
    return std::nullopt;
  }
  return predicate->root() == nullptr ? "" : Write(*predicate->root());
}

TEST(PredicateParse, UnderstandsTheGrammar) {
  const struct {
    std::string text;
    std::string rewritten;
  } rows[] = {
      {"", ""},
      {"  \t", ""},
      {"(cn=Babs Jensen)", "(cn=Babs Jensen)"},
      {"(!(cn=Tim Howes))", "(!(cn=Tim Howes))"},
      {"(&(objectClass=Person)(|(sn=Jensen)(cn=Babs J*)))",
       "(&(objectclass=Person)(|(sn=Jensen)(cn=babs j*)))"},
      {"(o=univ*of*mich*)", "(o=univ*of*mich*)"},
      {"(o=Parens R Us \\28for all your parenthetical needs\\29)",
       "(o=Parens R Us \\28for all your parenthetical needs\\29)"},
      {"(cn=*\\2A*)", "(cn=*\\2a*)"},
      {"(filename=C:\\5cMyFile)", "(filename=C:\\5cMyFile)"},
      {"(bin=\\00\\00\\00\\04)", "(bin=\\00\\00\\00\\04)"},
      {"(user=wump)", "(user=wump)"},
      {"(&(q<=3)(speed>=1000))", "(&(q<=3)(speed>=1000))"},
      {"(a~=x)", "(a~=x)"},
      {"(a=*)", "(a=*)"},
      {"(a=**)", "(a=*)"},
      {"( a = * )", "(a=*)"},
      {"(a=)", "(a=)"},
      {"(a=x=y!z~<>)", "(a=x=y!z~<>)"},
      {"(a=>5)", "(a=>5)"},
      {"(a:b=1)", "(a:b=1)"},
      {"(a\\2c=1)", "(a\\2C=1)"},
      {"(key=\\FF\\00)", "(key=\\FF\\00)"},
      {" ( & ( a=1) \t( ! (b=2) ) ) ", "(&(a=1)(!(b=2)))"},
      {"(&(a=1))", "(&(a=1))"},
      {"(\ta\r\n=x)", "(a=x)"},
      {"(a=" + Repeat("*", 100000) + ")", "(a=*)"},
      {Repeat(" ", 100000) + "(" + Repeat(" ", 100000) + "a=x)" + Repeat(" ", 100000), "(a=x)"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Rewritten(row.text), std::optional(row.rewritten)) << row.text.substr(0, 40);
  }
}

TEST(PredicateParse, RefusesWhatIsNoFilter) {
  const std::string rows[] = {
      "a=1",
      "()",
      "(",
      ")",
      "(a)",
      "(a=1",
      "(a=1))",
      "(a=1)(b=2)",
      "(a=1)x",
      "((a=1))",
      "(&)",
      "(|)",
      "(!)",
      "(& )",
      "(!(a=1)(b=2))",
      "(&(a=1)",
      "(&(a=1)x)",
      "(&a=1)",
      "(=1)",
      "( =1)",
      "(a<1)",
      "(a>1)",
      "(a~1)",
      "(a!=1)",
      "(a~=x*)",
      "(a>=3*)",
      "(a<=*)",
      "(a>=*)",
      "(a~=*)",
      "(a*=1)",
      "(a_b=1)",
      "(a,b=1)",
      "(a\tb=1)",
      "(cn:1.2.3.4.5:=Fred Flintstone)",
      "(sn:dn:2.4.6.8.10:=Barney Rubble)",
      "(o:dn:=Ace Industry)",
      "(:dn:2.4.6.8.10:=Dino)",
      "(a:=1)",
      "(a=x(y)",
      "(a=\\)",
      "(a=\\2)",
      "(a=\\zz)",
      "(a=\\41)",
      "(a=\\FF)",
      "(a=\\FF\\00x)",
      "(a=\\FF\\00*)",
      "(sn=Lu\\c4\\8di\\c4\\87)",
      WithNuls("(a=\0)"),
      WithNuls("(a\0=1)"),
      WithNuls("(a=1)\0"),
      "(a=1",
      "(a=\\",
      Repeat("(", 100000),
      Repeat("(!", 100000),
      Repeat("(&", 100000) + "(a=1)" + Repeat(")", 100000),
      Repeat(")", 100000),
      "(a=" + Repeat("\\", 100000) + ")",
      Repeat(" ", 100000) + "(",
  };
  for (const std::string& row : rows) {
    EXPECT_EQ(Rewritten(row), std::nullopt) << row.substr(0, 40);
  }
}

TEST(PredicateParse, TakesNestingUpToItsLimit) {
  const auto nested = [](std::string_view open, std::size_t depth) {
    return Repeat(open, depth) + "(a=1)" + Repeat(")", depth);
  };
  constexpr auto kDeepest = static_cast<std::size_t>(Predicate::kMaximumDepth);
  const AttributeList attributes = AttributeList::Parse("(a=1)").value();
  for (const char* open : {"(!", "(&", "(|", "( | (b=2)"}) {
    const auto deepest = Predicate::Parse(nested(open, kDeepest));
    ASSERT_TRUE(deepest.ok()) << open;
    EXPECT_TRUE(deepest->Matches(attributes, Unlimited())) << open;
    EXPECT_EQ(Rewritten(nested(open, kDeepest + 1)), std::nullopt) << open;
  }
}

TEST(PredicateParse, TakesComparisonsUpToTheirLimit) {
  constexpr auto kMost = static_cast<std::size_t>(Predicate::kMaximumComparisons);
  const auto predicate = Predicate::Parse("(|" + Repeat("(a=1)", kMost - 1) + "(b=2))");
  ASSERT_TRUE(predicate.ok());
  EXPECT_EQ(predicate->root()->children.size(), kMost);
  EXPECT_TRUE(predicate->Matches(AttributeList::Parse("(b=2)").value(), Unlimited()));
  EXPECT_EQ(Rewritten("(|" + Repeat("(a=1)", kMost) + "(b=2))"), std::nullopt);
  EXPECT_EQ(Rewritten("(&" + Repeat("(|(a=1)(b=*))", kMost / 2) + "(c=3))"), std::nullopt);
}

TEST(PredicateParse, KeepsTheTypedOperand) {
  const auto predicate = Predicate::Parse("(&(A=5)(b=*X  y*)(c=Z)(d=*)(k=\\FF\\01))");
  ASSERT_TRUE(predicate.ok());
  const auto& children = predicate->root()->children;
  ASSERT_EQ(children.size(), 5u);
  EXPECT_EQ(children[0].tag, "a");
  EXPECT_EQ(children[0].value, (AttributeValue{5, "5"}));
  EXPECT_EQ(children[0].pieces, (std::vector<std::string>{"5"}));
  EXPECT_EQ(children[1].pieces, (std::vector<std::string>{"", "x y", ""}));
  EXPECT_EQ(children[2].value, (AttributeValue{std::string("Z"), "Z"}));
  EXPECT_EQ(children[2].pieces, (std::vector<std::string>{"z"}));
  EXPECT_EQ(children[3].kind, Kind::kPresent);
  EXPECT_EQ(children[3].pieces, std::vector<std::string>());
  EXPECT_EQ(children[4].value, (AttributeValue{Opaque{1}, "\\FF\\01"}));
}

struct MatchRow {
  std::string predicate;
  std::string attributes;
  bool matches;
};

void ExpectMatches(const std::vector<MatchRow>& rows) {
  for (const MatchRow& row : rows) {
    const auto predicate = Predicate::Parse(row.predicate);
    const auto attributes = AttributeList::Parse(row.attributes);
    ASSERT_TRUE(predicate.ok()) << row.predicate;
    ASSERT_TRUE(attributes.ok()) << row.attributes;
    EXPECT_EQ(predicate->Matches(*attributes, Unlimited()), row.matches)
        << row.predicate << " on " << row.attributes;
  }
}

TEST(PredicateMatches, ComparesTypedValues) {
  ExpectMatches({
      {"", "", true},
      {"", "(a=1)", true},
      {"(x=33)", "(x=33)", true},
      {"(x=33)", "(x=033)", true},
      {"(x= 33 )", "(x=33)", true},
      {"(x=33)", "(x=true)", false},
      {"(x=33)", "(x=33a)", false},
      {"(x=33)", "(y=33)", false},
      {"(x=33)", "x", false},
      {"(y=foo)", "(y=FOO)", true},
      {"(Y=foo)", "(y=foo)", true},
      {"(|(x=33)(y=foo))", "(x=true),(y=FOO)", true},
      {"(&(x=33)(y=foo))", "(x=true),(y=FOO)", false},
      {"(a=  Some String  )", "(a=SOME    STRING)", true},
      {"(a=some\\09string)", "(a=SOME \\0D\\0AString)", true},
      {"(a=somestring)", "(a=some string)", false},
      {"(a=TRUE)", "(a=true)", true},
      {"(a=true)", "(a=False)", false},
      {"(a=\\ff\\00\\2c)", "(a=\\FF\\00\\2C)", true},
      {"(a=\\FF\\00)", "(a=\\FF\\00\\00)", false},
      {"(a=\\FF\\31)", "(a=1)", false},
      {"(a=\xC3\xBC)", "(a=\xC3\xBC)", true},
      {"(a=2147483648)", "(a=2147483648)", true},
      {"(a=2147483648)", "(a=02147483648)", false},
      {"(a~=FOO)", "(a=foo)", true},
      {"(a~=foo)", "(a=fo)", false},
      {"(a~=5)", "(a=05)", true},
      {"(a=x\\2ay)", "(a=x*y)", true},
      {"(a=x\\2ay)", "(a=xzy)", false},
      {"(a=x=y)", "(a=x\\3Dy)", true},
      {"(a\\2Cb=1)", "(a\\2cb=1)", true},
  });
}

TEST(PredicateMatches, TreatsTheEmptyStringAsAValue) {
  ExpectMatches({
      {"(a=)", "(a=)", true},
      {"(a= )", "(a=)", true},
      {"(a=*)", "(a=)", true},
      {"(a=)", "(a=x)", false},
      {"(a=)", "a", false},
      {"(a=x)", "(a=)", false},
      {"(a=*x*)", "(a=)", false},
      {"(a=)", "", false},
  });
}

TEST(PredicateMatches, OrdersIntegersByNumberAndStringsByText) {
  ExpectMatches({
      {"(&(q<=3)(speed>=1000))", "(q=3),(speed=1000)", true},
      {"(&(q<=3)(speed>=1000))", "(q=4),(speed=1000)", false},
      {"(&(q<=3)(speed>=1000))", "(q=3),(speed=999)", false},
      {"(a<=10)", "(a=9)", true},
      {"(a>=10)", "(a=9)", false},
      {"(a<=-1)", "(a=-2)", true},
      {"(a>=-1)", "(a=-2)", false},
      {"(a<=2147483647)", "(a=-2147483648)", true},
      {"(a<=b)", "(a=A)", true},
      {"(a<=B)", "(a=a)", true},
      {"(a>=B)", "(a=a)", false},
      {"(a>=a)", "(a=A)", true},
      {"(a<=a)", "(a= A )", true},
      {"(a>=z)", "(a=\xC3\xBC)", true},
      {"(a<=9)", "(a=x)", false},
      {"(a>=9)", "(a=x)", false},
      {"(a<=x)", "(a=9)", false},
      {"(a<=true)", "(a=true)", false},
      {"(a>=true)", "(a=true)", false},
      {"(a<=\\FF\\02)", "(a=\\FF\\01\\03)", true},
      {"(a>=\\FF\\02)", "(a=\\FF\\01\\03)", false},
      {"(a<=9)", "a", false},
      {"(a<=9)", "", false},
      {"(a<=5)", "(a=9,5,7)", true},
      {"(a<=4)", "(a=9,5,7)", false},
  });
}

TEST(PredicateMatches, WildcardsAreForStrings) {
  ExpectMatches({
      {"(x=34*)", "(x=34foo)", true},
      {"(x=34*)", "(x=3432)", false},
      {"(x=*)", "(x=3432)", true},
      {"(x=t*)", "(x=true)", false},
      {"(x=*\\00*)", "(x=\\FF\\00)", false},
      {"(cn=Babs J*)", "(cn=BABS   Jensen)", true},
      {"(cn=Babs J*)", "(cn=BabsJensen)", false},
      {"(o=univ*of*mich*)", "(o=University of Michigan)", true},
      {"(o=univ*of*mich*)", "(o=University Michigan of)", false},
      {"(cn=*\\2A*)", "(cn=a*b)", true},
      {"(cn=*\\2A*)", "(cn=ab)", false},
      {"(a=*b)", "(a=c,ab)", true},
      {"(a=*b)", "(a=bc,ba)", false},
      {"(a=*)", "a", true},
      {"(a=*)", "b", false},
      {"(a=x*)", "a", false},
  });
}

TEST(PredicateMatches, FindsElementsOfAnEscapedList) {
  const std::string one = "(x-ip-addresses=10.0.0.2)";
  const std::string first = "(x-ip-addresses=10.0.0.2\\2C10.0.0.3)";
  const std::string middle = "(x-ip-addresses=10.0.0.1\\2C10.0.0.2\\2C10.0.0.3)";
  const std::string last = "(x-ip-addresses=10.0.0.1\\2c10.0.0.2)";
  const std::string several = "(x-ip-addresses=10.0.0.1,10.0.0.2,10.0.0.3)";
  const std::string other = "(x-ip-addresses=10.0.0.20\\2C110.0.0.2\\2C10.0.0.21)";
  const std::string filter =
      "(|(|(|(x-ip-addresses=10.0.0.2)(x-ip-addresses=*,10.0.0.2,*))(x-ip-addresses=*,10.0.0.2))"
      "(x-ip-addresses=10.0.0.2,*))";
  ExpectMatches({
      {"(x-ip-addresses=*,10.0.0.2,*)", middle, true},
      {"(x-ip-addresses=*\\2c10.0.0.2\\2C*)", middle, true},
      {"(x-ip-addresses=10.0.0.1,10.0.0.2,10.0.0.3)", middle, true},
      {"(x-ip-addresses=10.0.0.1\\2c10.0.0.2\\2c10.0.0.3)", middle, true},
      {"(x-ip-addresses=*,10.0.0.2,*)", first, false},
      {"(x-ip-addresses=*,,*)", middle, false},
      {filter, one, true},
      {filter, first, true},
      {filter, middle, true},
      {filter, last, true},
      {filter, several, true},
      {filter, other, false},
      {filter, "(x-ip-addresses=)", false},
      {"(&" + filter + "(x-server-name=srv1))", middle + ",(x-server-name=SRV1)", true},
      {"(&" + filter + "(x-server-name=srv1))", middle + ",(x-server-name=srv2)", false},
      {"(&(x-server-name=srv1))", "(x-server-name=srv1)", true},
      {"(x-server-ns-port=8080)", "(x-server-ns-port=8080)", true},
      {"(&(|(x-server-ns-name=ns1)(x-server-ns-name=ns2))(x-server-name=4711))",
       "(x-server-ns-name=ns2),(x-server-name=4711)", true},
  });
}

// RFC 2608 section 8.1: "(x=3)" matches (x=1,2,3); "(!(Y=0))" matches (y=0,1).
TEST(PredicateMatches, NegatesValueByValue) {
  ExpectMatches({
      {"(x=3)", "(x=1,2,3)", true},
      {"(x=4)", "(x=1,2,3)", false},
      {"(!(Y=0))", "(y=0,1)", true},
      {"(!(Y=0))", "(y=0)", false},
      {"(!(!(y=0)))", "(y=0,1)", true},
      {"(!(!(y=2)))", "(y=0,1)", false},
      {"(!(&(y=0)(x=1)))", "(y=0,1),(x=1)", true},
      {"(!(&(y=0)(x=1)))", "(y=0),(x=1)", false},
      {"(!(|(y=0)(x=1)))", "(y=1),(x=2)", true},
      {"(!(|(y=0)(x=1)))", "(y=1),(x=1)", false},
      {"(!(a=1))", "", true},
      {"(!(a=1))", "(b=1)", true},
      {"(!(a=1))", "a", true},
      {"(!(a=1))", "(a=one)", true},
      {"(!(a=*))", "", true},
      {"(!(a=*))", "(a=1,2)", false},
      {"(!(a=*))", "a", false},
      {"(!(a<=3))", "(a=1,5)", true},
      {"(!(a<=3))", "(a=1,2)", false},
      {"(!(a=x*))", "(a=xy)", false},
      {"(!(a=x*))", "(a=xy,z)", true},
  });
}

TEST(PredicateMatches, TakesLinearTime) {
  const auto attributes = AttributeList::Parse("(a=" + Repeat("a", 200000) + ")");
  const auto predicate = Predicate::Parse("(a=*" + Repeat("a", 60000) + "b" + Repeat("a", 60000) + "*)");
  ASSERT_TRUE(attributes.ok() && predicate.ok());
  EXPECT_FALSE(predicate->Matches(*attributes, Unlimited()));
}

TEST(PredicateParse, AnyMutationEitherFailsOrMeansTheSameWrittenAnew) {
  const std::string seeds[] = {"(&(|(|(a=10)(a=*,10,*))(b=Some  x*))(!(c<=5)))", "(a\\2Cb=\\FF\\00\\01)",
                               "( | (a~=x) (b>=\\28y\\29) ( ! (c=*\\2a) ) )", "(a=*)"};
  const AttributeList lists[] = {AttributeList::Parse("(a=1\\2C10\\2C2),(b=some x),(c=5,6)").value(),
                                 AttributeList::Parse("a,(b=\\28y\\29),(c=x*)").value(),
                                 AttributeList::Parse("(a\\2Cb=\\FF\\00\\01),(a=10)").value(),
                                 AttributeList()};
  Mutator mutator(1997, WithNuls("()&|!=~<>*\\2acF \t\0\x80,_:10"));
  int parsed = 0;
  for (int round = 0; round < 50000; ++round) {
    const std::string text = mutator.Mutate(seeds[mutator.Below(std::size(seeds))]);
    const auto predicate = Predicate::Parse(text);
    if (!predicate) {
      ASSERT_EQ(predicate.error(), Error::kParseError);
      continue;
    }
    ++parsed;
    const std::string written = Rewritten(text).value();
    ASSERT_EQ(Rewritten(written), std::optional(written)) << text;
    const auto again = Predicate::Parse(written);
    for (const AttributeList& list : lists) {
      ASSERT_EQ(again->Matches(list, Unlimited()), predicate->Matches(list, Unlimited())) << text;
    }
  }
  EXPECT_GT(parsed, 1000);
}

}  // namespace
}  // namespace slp
