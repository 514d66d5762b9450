#include <string>
#include <vector>

#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::HandsOut;
using scripted_slp::HandsOutNothing;
using scripted_slp::Next;
using scripted_slp::Returns;

class Escaping : public CoreFixture {};

struct CodeRow {
  SLPError slp;
  SResult::EError error;
};

const std::vector<CodeRow>& TextCodes() {
  static const std::vector<CodeRow> rows = {
      {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
      {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
      {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
      {SLP_LANGUAGE_NOT_SUPPORTED, SResult::ERR_UNKNOWN},
      {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_UNKNOWN},
      {SLP_NOT_IMPLEMENTED, SResult::ERR_UNKNOWN},
      {SLP_LAST_CALL, SResult::ERR_UNKNOWN},
      {SLPError(-30), SResult::ERR_UNKNOWN},
  };
  return rows;
}

TEST_F(Escaping, EscapesAsAValue) {
  std::string out;
  EXPECT_THAT(CKelSLPImpl::EscapeSLPCharacters(out, "a,b_c*"), SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_EQ(out, "a\\2Cb_c*");
  EXPECT_EQ(scripted_slp::Calls(), std::vector<std::string>{"SLPEscape(a,b_c*,0)"});
}

TEST_F(Escaping, UnescapesAsAValue) {
  std::string out;
  EXPECT_THAT(CKelSLPImpl::UnescapeSLPCharacters(out, "a\\2cb"), SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_EQ(out, "a,b");
  EXPECT_EQ(scripted_slp::Calls(), std::vector<std::string>{"SLPUnescape(a\\2cb,0)"});
}

TEST_F(Escaping, MapsTheCodesOfEscape) {
  for (const CodeRow& row : TextCodes()) {
    Next(Function::kEscape, Returns(row.slp));
    std::string out = "before";
    EXPECT_THAT(
        CKelSLPImpl::EscapeSLPCharacters(out, "a,b"),
        SameResult(SResult(row.error, "str: a,b", "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape")));
    EXPECT_EQ(out, "before");
  }
}

TEST_F(Escaping, MapsTheCodesOfUnescape) {
  for (const CodeRow& row : TextCodes()) {
    Next(Function::kUnescape, Returns(row.slp));
    std::string out = "before";
    EXPECT_THAT(CKelSLPImpl::UnescapeSLPCharacters(out, "a\\zz"),
                SameResult(SResult(row.error, "str: a\\zz",
                                   "kelsd::CKelSLPImpl::UnescapeSLPCharacters SLPUnescape")));
    EXPECT_EQ(out, "before");
  }
}

TEST_F(Escaping, TellsThatNothingWasHandedOut) {
  std::string out = "before";
  Next(Function::kEscape, HandsOutNothing());
  EXPECT_THAT(CKelSLPImpl::EscapeSLPCharacters(out, "x"),
              SameResult(SResult(SResult::ERR_UNKNOWN, "str: x",
                                 "kelsd::CKelSLPImpl::EscapeSLPCharacters SLPEscape NULL")));
  Next(Function::kUnescape, HandsOutNothing());
  EXPECT_THAT(CKelSLPImpl::UnescapeSLPCharacters(out, "x"),
              SameResult(SResult(SResult::ERR_UNKNOWN, "str: x",
                                 "kelsd::CKelSLPImpl::UnescapeSLPCharacters SLPUnescape NULL")));
  EXPECT_EQ(out, "before");
}

TEST_F(Escaping, ReleasesWhatAFailingCallHandsOut) {
  scripted_slp::Reply reply = HandsOut("left over");
  reply.result = SLP_PARSE_ERROR;
  Next(Function::kEscape, reply);
  Next(Function::kUnescape, reply);
  Next(Function::kParseAttrs, reply);
  std::string out = "before";
  EXPECT_EQ(CKelSLPImpl::EscapeSLPCharacters(out, "x"), SResult::ERR_PARSE_ERROR);
  EXPECT_EQ(CKelSLPImpl::UnescapeSLPCharacters(out, "x"), SResult::ERR_PARSE_ERROR);
  EXPECT_EQ(CKelSLPImpl::ParseAttribute(out, "x-a", "(x-a=1)"), SResult::ERR_PARSE_ERROR);
  EXPECT_EQ(out, "before");
}

TEST_F(Escaping, TakesOneAttributeOutOfAList) {
  struct Row {
    std::string tag;
    std::string list;
    std::string value;
  };
  const std::vector<Row> rows = {
      {"x-a", "(x-a=1),(x-b=2)", "1"},
      {"x-b", "(x-a=1),(x-b=a\\2Cb)", "a,b"},
      {" X-B ", "(x-b=2)", "2"},
      {"x-a", "(x-a=)", ""},
      {"x-a", "(x-a)", ""},
  };
  for (const Row& row : rows) {
    std::string value = "before";
    EXPECT_THAT(CKelSLPImpl::ParseAttribute(value, row.tag, row.list),
                SameResult(SResult(SResult::ERR_SUCCESS)));
    EXPECT_EQ(value, row.value);
  }
}

TEST_F(Escaping, RefusesAnAttributeWithABadTag) {
  std::string value = "before";
  EXPECT_THAT(CKelSLPImpl::ParseAttribute(value, " x_a ", "(x_a=1)"),
              SameResult(SResult(SResult::ERR_TAG_BAD_CHARACTERS, "tag: x_a",
                                 "kelsd::CKelSLPImpl::ParseAttribute kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_THAT(CKelSLPImpl::ParseAttribute(value, " ", "(x-a=1)"),
              SameResult(SResult(SResult::ERR_TAG_EMPTY, "",
                                 "kelsd::CKelSLPImpl::ParseAttribute kelsd::CKelSLPImpl::ValidateTag")));
  EXPECT_EQ(value, "before");
  EXPECT_EQ(scripted_slp::Calls(), std::vector<std::string>());
}

TEST_F(Escaping, TellsThatATagIsMissing) {
  std::string value = "before";
  EXPECT_THAT(
      CKelSLPImpl::ParseAttribute(value, "x-c", "(x-a=1)"),
      SameResult(SResult(SResult::ERR_PARSE_ERROR, "", "kelsd::CKelSLPImpl::ParseAttribute SLPParseAttrs")));
  EXPECT_EQ(value, "before");
}

TEST_F(Escaping, MapsTheCodesOfParseAttrs) {
  for (const CodeRow& row : TextCodes()) {
    Next(Function::kParseAttrs, Returns(row.slp));
    std::string value = "before";
    EXPECT_THAT(CKelSLPImpl::ParseAttribute(value, "x-a", "(x-a=1)"),
                SameResult(SResult(row.error, "", "kelsd::CKelSLPImpl::ParseAttribute SLPParseAttrs")));
    EXPECT_EQ(value, "before");
  }
}

TEST_F(Escaping, TellsThatNoValueWasHandedOut) {
  Next(Function::kParseAttrs, HandsOutNothing());
  std::string value = "before";
  EXPECT_THAT(
      CKelSLPImpl::ParseAttribute(value, "x-a", "(x-a=1)"),
      SameResult(SResult(SResult::ERR_UNKNOWN, "", "kelsd::CKelSLPImpl::ParseAttribute SLPParseAttrs NULL")));
  EXPECT_EQ(value, "before");
}

TEST_F(Escaping, TellsThatAValueCannotBeUnescaped) {
  std::string value = "before";
  EXPECT_THAT(
      CKelSLPImpl::ParseAttribute(value, "x-a", "(x-a=a\\zz)"),
      SameResult(SResult(
          SResult::ERR_VALUE_BAD_CHARACTERS,
          "SLP message was rejected by a remote SLP agent. No information was retrieved, and at least "
          "one SA or DA indicated a protocol error. Data may be malformed/damaged in transit.. "
          "str: a\\zz",
          "kelsd::CKelSLPImpl::ParseAttribute "
          "kelsd::CKelSLPImpl::UnescapeSLPCharacters SLPUnescape")));
  EXPECT_EQ(value, "before");
}

}  // namespace
}  // namespace kelsd
