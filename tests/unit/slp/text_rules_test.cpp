#include <map>
#include <string>
#include <vector>

#include "support/core_fixture.h"

namespace kelsd {
namespace {

using std::string_literals::operator""s;

class TextRules : public CoreFixture {};

TEST_F(TextRules, AcceptsTags) {
  for (const std::string& tag : {"x-name"s, "A"s, "a.b"s, "a+b"s, "a;b"s, "a\"b"s, "\x80"s, "\xA0x\xFF"s}) {
    EXPECT_THAT(CKelSLPImpl::ValidateTag(tag), SameResult(SResult(SResult::ERR_SUCCESS))) << tag;
  }
}

TEST_F(TextRules, RefusesAnEmptyTag) {
  EXPECT_THAT(CKelSLPImpl::ValidateTag(""),
              SameResult(SResult(SResult::ERR_TAG_EMPTY, "", "kelsd::CKelSLPImpl::ValidateTag")));
}

TEST_F(TextRules, RefusesTagsWithForbiddenCharacters) {
  std::vector<std::string> tags = {"x_name", "a*", "a b", "a,b", "a\tb", "a\x7F"};
  for (const char character : "_*(),\\!<=>~\r\n\t\v\f \x7F"s) {
    tags.push_back("a"s + character + "b");
    tags.emplace_back(1, character);
  }
  for (int control = 0; control < 0x20; ++control) {
    tags.emplace_back("x"s + static_cast<char>(control));
  }
  for (const std::string& tag : tags) {
    EXPECT_THAT(CKelSLPImpl::ValidateTag(tag),
                SameResult(SResult(SResult::ERR_TAG_BAD_CHARACTERS, "tag: " + tag,
                                   "kelsd::CKelSLPImpl::ValidateTag")));
  }
}

TEST_F(TextRules, AcceptsScopes) {
  for (const std::string& scope : {"tamro"s, "a_b"s, "a-b"s, "a.b"s, "a:b"s, "a\"b"s, "\x80"s, "\xFF"s}) {
    EXPECT_THAT(CKelSLPImpl::ValidateScope(scope), SameResult(SResult(SResult::ERR_SUCCESS))) << scope;
  }
}

TEST_F(TextRules, RefusesAnEmptyScope) {
  EXPECT_THAT(CKelSLPImpl::ValidateScope(""),
              SameResult(SResult(SResult::ERR_SCOPE_EMPTY, "", "kelsd::CKelSLPImpl::ValidateScope")));
}

TEST_F(TextRules, RefusesScopesWithForbiddenCharacters) {
  std::vector<std::string> scopes = {"a;b", "a+b", "a*"};
  for (const char character : "(),\\!<=>~;*+\r\n\t\v\f \x7F"s) {
    scopes.push_back("a"s + character + "b");
  }
  for (int control = 0; control < 0x20; ++control) {
    scopes.emplace_back("x"s + static_cast<char>(control));
  }
  for (const std::string& scope : scopes) {
    EXPECT_THAT(CKelSLPImpl::ValidateScope(scope),
                SameResult(SResult(SResult::ERR_SCOPE_BAD_CHARACTERS, "scope = " + scope,
                                   "kelsd::CKelSLPImpl::ValidateScope")));
  }
}

TEST_F(TextRules, EveryOtherByteMayStandInTagsAndScopes) {
  const std::string tag_forbidden = "_*(),\\!<=>~";
  const std::string scope_forbidden = "(),\\!<=>~;*+";
  for (int byte = 0x21; byte <= 0xFF; ++byte) {
    if (byte == 0x7F) {
      continue;
    }
    const char character = static_cast<char>(byte);
    const std::string text(1, character);
    EXPECT_EQ(CKelSLPImpl::ValidateTag(text).IsOk(), tag_forbidden.find(character) == std::string::npos)
        << byte;
    EXPECT_EQ(CKelSLPImpl::ValidateScope(text).IsOk(), scope_forbidden.find(character) == std::string::npos)
        << byte;
  }
}

TEST_F(TextRules, ListsScopesAsGiven) {
  struct Row {
    std::vector<std::string> scopes;
    std::string list;
  };
  const std::vector<Row> rows = {
      {{}, ""},
      {{"tamro"}, "tamro"},
      {{" default", "tamro"}, " default,tamro"},
      {{"a\t", "a\t"}, "a\t,a\t"},
      {{"a", "A", "a"}, "a,A,a"},
  };
  for (const Row& row : rows) {
    std::string list = "before";
    EXPECT_THAT(CKelSLPImpl::CreateScopesList(list, row.scopes), SameResult(SResult(SResult::ERR_SUCCESS)));
    EXPECT_EQ(list, row.list);
  }
}

TEST_F(TextRules, RefusesListsWithABadScope) {
  std::string list = "before";
  EXPECT_THAT(CKelSLPImpl::CreateScopesList(list, {"good", " a b "}),
              SameResult(SResult(SResult::ERR_SCOPE_BAD_CHARACTERS, "scope = a b",
                                 "kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope")));
  EXPECT_THAT(CKelSLPImpl::CreateScopesList(list, {"good", "  "}),
              SameResult(SResult(SResult::ERR_SCOPE_EMPTY, "",
                                 "kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope")));
  EXPECT_EQ(list, "before");
}

TEST_F(TextRules, ListsTagsTrimmedAndOnce) {
  struct Row {
    std::vector<std::string> tags;
    std::string list;
  };
  const std::vector<Row> rows = {
      {{}, ""},
      {{"X-A", "x-a", "x-b"}, "X-A,x-b"},
      {{" x-b ", "x-a", "X-B"}, "x-b,x-a"},
  };
  for (const Row& row : rows) {
    std::string list = "before";
    EXPECT_THAT(CKelSLPImpl::CreateAttributeTagsList(list, row.tags),
                SameResult(SResult(SResult::ERR_SUCCESS)));
    EXPECT_EQ(list, row.list);
  }
}

TEST_F(TextRules, RefusesListsWithABadTag) {
  std::string list = "before";
  EXPECT_THAT(
      CKelSLPImpl::CreateAttributeTagsList(list, {"x-a", " x_b "}),
      SameResult(SResult(SResult::ERR_TAG_BAD_CHARACTERS, "tag: x_b",
                         "kelsd::CKelSLPImpl::CreateAttributeTagsList kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_THAT(
      CKelSLPImpl::CreateAttributeTagsList(list, {"x-a", " "}),
      SameResult(SResult(SResult::ERR_TAG_EMPTY, "",
                         "kelsd::CKelSLPImpl::CreateAttributeTagsList kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_EQ(list, "before");
}

TEST_F(TextRules, ListsAttributesInOrderOfTheirTags) {
  struct Row {
    std::map<std::string, std::string> attributes;
    std::string list;
  };
  const std::vector<Row> rows = {
      {{}, ""},
      {{{"tag2", "value2"}, {"tag1", "value1"}}, "(tag1=value1),(tag2=value2)"},
      {{{"tag", ""}}, "(tag=)"},
      {{{" tag ", " value "}}, "(tag= value )"},
      {{{"x-a", "a,b"}}, "(x-a=a\\2Cb)"},
      {{{"x-a", "(1)"}, {"X-B", "\xC3\xBC"}}, "(X-B=\xC3\xBC),(x-a=\\281\\29)"},
  };
  for (const Row& row : rows) {
    std::string list = "before";
    EXPECT_THAT(CKelSLPImpl::CreateSLPAttributeList(list, row.attributes),
                SameResult(SResult(SResult::ERR_SUCCESS)));
    EXPECT_EQ(list, row.list);
  }
}

TEST_F(TextRules, RefusesAttributesWithABadTag) {
  std::string list = "before";
  EXPECT_THAT(
      CKelSLPImpl::CreateSLPAttributeList(list, {{"x-a", "1"}, {" x_b ", "2"}}),
      SameResult(SResult(SResult::ERR_TAG_BAD_CHARACTERS, "tag: x_b",
                         "kelsd::CKelSLPImpl::CreateSLPAttributeList kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_THAT(
      CKelSLPImpl::CreateSLPAttributeList(list, {{" ", "2"}}),
      SameResult(SResult(SResult::ERR_TAG_EMPTY, "",
                         "kelsd::CKelSLPImpl::CreateSLPAttributeList kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_EQ(list, "before");
}

TEST_F(TextRules, RefusesAttributesWhoseTagsDifferOnlyInCase) {
  std::string list = "before";
  EXPECT_THAT(CKelSLPImpl::CreateSLPAttributeList(list, {{"x-a", "1"}, {"X-A", "2"}}),
              SameResult(SResult(SResult::ERR_TAG_NOT_UNIQUE, "tag: x-a, value: 1",
                                 "kelsd::CKelSLPImpl::CreateSLPAttributeList")));
  EXPECT_EQ(list, "before");
}

TEST_F(TextRules, RefusesAttributesWhoseValueCannotBeEscaped) {
  scripted_slp::Next(scripted_slp::Function::kEscape, scripted_slp::Returns(SLP_PARSE_ERROR));
  std::string list = "before";
  EXPECT_THAT(CKelSLPImpl::CreateSLPAttributeList(list, {{"x-a", "1"}}),
              SameResult(SResult(SResult::ERR_PARSE_ERROR, "str: 1",
                                 "kelsd::CKelSLPImpl::CreateSLPAttributeList "
                                 "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape")));
  EXPECT_EQ(list, "before");
}

}  // namespace
}  // namespace kelsd
