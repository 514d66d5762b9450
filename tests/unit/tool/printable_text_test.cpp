#include "printable_text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace kelsd_tool {
namespace {

using std::string_literals::operator""s;

TEST(PrintableText, ShowsControlCharactersAndStrayBytes) {
  struct Row {
    std::string text;
    std::string shown;
  };
  for (const Row& row : {
           Row{"", ""},
           Row{"plain ~", "plain ~"},
           Row{"\x1B[31m"s, "\\x1B[31m"},
           Row{"a\0b\n\r\t"s, "a\\x00b\\x0A\\x0D\\x09"},
           Row{"\x7F", "\\x7F"},
           // U+0085 and U+009B, which a terminal obeys like ESC [; U+00A0 is the first that it does not.
           Row{"\xC2\x85\xC2\x9B\xC2\x9F\xC2\xA0", "\\xC2\\x85\\xC2\\x9B\\xC2\\x9F\xC2\xA0"},
           Row{"M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80", "M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80"},
           Row{"\x9B"
               "31m",
               "\\x9B31m"},
           Row{"M\xFCller", "M\\xFCller"},
           Row{"\xC3", "\\xC3"},
           Row{"\xE2\x82", "\\xE2\\x82"},
           // Longer than need be, a surrogate, beyond U+10FFFF.
           Row{"\xC0\x80", "\\xC0\\x80"},
           Row{"\xE0\x80\x80", "\\xE0\\x80\\x80"},
           Row{"\xED\xA0\x80", "\\xED\\xA0\\x80"},
           Row{"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},
       }) {
    EXPECT_EQ(PrintableText(row.text), row.shown);
  }
}

TEST(PrintableText, BringsTheSystemsWordsIntoOneLine) {
  for (const auto& [text, line] : std::map<std::string, std::string>{
           {"", ""},
           {"a  b", "a  b"},
           {"Refused.\r\n f", "Refused. f"},
           {"one \n\n  two\n", "one two"},
           {"\nx", " x"},
           {"a\tb", "a\tb"},
       }) {
    EXPECT_EQ(OneLine(text), line);
  }
}

TEST(PrintableText, EscapesInJsonWhatATerminalWouldObey) {
  EXPECT_EQ(PrintableJson("{\n  \"a\": \"\\u001b \x7F \xC2\x9B \xC2\xA0 \xC3\xBC\"\n}"),
            "{\n  \"a\": \"\\u001b \\u007F \\u009B \xC2\xA0 \xC3\xBC\"\n}");
}

}  // namespace
}  // namespace kelsd_tool
