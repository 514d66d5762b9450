#include "properties/property_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace slp {

void PrintTo(const PropertyLine& line, std::ostream* out) {
  *out << line.number << ": \"" << line.key << "\" = \"" << line.value << '"';
}

namespace {

using Lines = std::vector<PropertyLine>;

struct Row {
  const char* name;
  std::string text;
  Lines lines;
};

TEST(ParsePropertyLinesTest, ReadsOneSettingALine) {
  const Row rows[] = {
      {"nothing", "", {}},
      {"one line without an end", "a=b", {{1, "a", "b"}}},
      {"blanks around key and value", " \ta.b \t= \tc d\t \n", {{1, "a.b", "c d"}}},
      {"blanks inside", "a b = c  d\n", {{1, "a b", "c  d"}}},
      {"further equals signs", "a = (b=c),(d=e)\n", {{1, "a", "(b=c),(d=e)"}}},
      {"empty lines count", "\n\na=1\n\nb=2\n", {{3, "a", "1"}, {5, "b", "2"}}},
      {"lines end with CR LF", "a=1\r\nb=2\r\n\r\nc=3\r\n", {{1, "a", "1"}, {2, "b", "2"}, {4, "c", "3"}}},
      {"lines end with CR", "a=1\rb=2\r", {{1, "a", "1"}, {2, "b", "2"}}},
      {"comments", "#a=1\n;b=2\n # c=3\n\t;d=4\ne=5#6;7\n", {{5, "e", "5#6;7"}}},
      {"no equals sign", "a\n\nb 1\nc=2", {{1, "", ""}, {3, "", ""}, {4, "c", "2"}}},
      {"no value", "a=\nb=  \nc=\t\r\n", {}},
      {"no key", "=1\n  =2\n=\n", {{1, "", ""}, {2, "", ""}, {3, "", ""}}},
      {"the same key again", "a=1\na=2\n", {{1, "a", "1"}, {2, "a", "2"}}},
      {"not ASCII", "a = B\xC3\xBCro,\xFF\n", {{1, "a", "B\xC3\xBCro,\xFF"}}},
      {"a byte order mark",
       "\xEF\xBB\xBF"
       "a=1\n",
       {{1, "a", "1"}}},
      {"a zero byte",
       std::string("a=1\0002\nb=3\n", 10),
       {{1, "a", std::string("1\0002", 3)}, {2, "b", "3"}}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ParsePropertyLines(row.text), row.lines) << row.name;
  }
}

TEST(ParsePropertyLinesTest, ReadsBehindAMegabyteOfComments) {
  std::string text;
  int lines = 0;
  while (text.size() < 1'000'000) {
    text += "# net.slp.port = 1; a line of words that set nothing\n";
    ++lines;
  }
  text += "#" + std::string(1'000'000, 'x') + "\na=1";
  EXPECT_EQ(ParsePropertyLines(text), Lines({{lines + 2, "a", "1"}}));
}

}  // namespace
}  // namespace slp
