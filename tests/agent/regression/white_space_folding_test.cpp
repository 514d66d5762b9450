// Folding white space must not look behind the text for the end of a run of blanks. The texts end where their
// memory ends, which the address sanitizer watches.
#include <gtest/gtest.h>

#include <vector>

#include "agent/slpd/daemon_logic.h"
#include "text/fold.h"

namespace slp {
namespace {

TEST(WhiteSpaceFoldingTest, RunsOfBlanksAtTheEnd) {
  struct Row {
    std::string_view text;
    std::string_view folded;
    std::string_view folded_inside;
  };
  const Row rows[] = {{"a  ", "a", "a "},    {"  ", "", " "},        {" ", "", " "},
                      {"", "", ""},          {"a\r\n\t", "a", "a "}, {"\t A \n b ", "a b", " a b "},
                      {"a  b", "a b", "a b"}};
  for (const Row& row : rows) {
    const std::vector<char> exact(row.text.begin(), row.text.end());
    const std::string_view text(exact.data(), exact.size());
    EXPECT_EQ(Fold(text), row.folded);
    EXPECT_EQ(FoldInside(text), row.folded_inside);
    EXPECT_TRUE(EqualFolded(text, row.folded));
    EXPECT_EQ(CompareFolded(text, row.folded), std::strong_ordering::equal);
  }
}

TEST(WhiteSpaceFoldingTest, BlanksEverywhereInARequest) {
  DaemonLogic daemon;
  ASSERT_EQ(daemon.Register(MakeSrvReg("service:x://h", "service:x", " ( a = Some   text  ) ", " DEFAULT ")),
            Error::kOk);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(" service:x\t", " ( a = some text\r\n ) ", "  default\n")),
            ReplyOf(SrvRply{Error::kOk, {{3600, "service:x://h", {}}}}));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "(   =   )")), ReplyOf(SrvRply{Error::kParseError, {}}));
}

}  // namespace
}  // namespace slp
