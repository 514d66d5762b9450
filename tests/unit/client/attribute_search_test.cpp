#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "client/client_impl.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "support/allocation_failure.h"
#include "support/core_fixture.h"
#include "unit/client/search_codes.h"

namespace kelsd {
namespace {

using scripted_slp::Attributes;
using scripted_slp::Code;
using scripted_slp::Delivers;
using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using scripted_slp::Throws;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Type = IKelServiceType;

const std::string kUrl = "service:x://h";
const std::vector<std::string> kNoTags;

class AttributeSearch : public CoreFixture {
 protected:
  /// A search that is expected to leave its output alone.
  static SResult FailingSearch(const std::vector<std::string>& tags = {},
                               const std::vector<std::string>& scopes = {}, const std::string& address = "") {
    SKelServiceAttributeSearchResult found("before");
    found.Attributes[Type::ATTR_VERSION] = "7";
    SResult result = CKelSLPClientImpl::FindAttributes(found, kUrl, tags, scopes, address);
    EXPECT_EQ(found.AttributeString, "before");
    EXPECT_THAT(found.Attributes, ElementsAre(Pair(Type::ATTR_VERSION, "7")));
    return result;
  }
};

SResult Failure(SResult::EError error, const std::string& debug, const std::string& detail = "") {
  return {error, detail, "kelsd::CKelSLPClientImpl::FindAttributes " + debug};
}

TEST_F(AttributeSearch, NeedsInitialisation) {
  EXPECT_THAT(FailingSearch(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(AttributeSearch, ReturnsTextAndKnownValues) {
  InitializeCore();
  const std::string list = "(x-server-name=a\\2Cb),(x-version=1.2),(x-foo=7),(x-ip-addresses=)";
  Next(Function::kFindAttrs, Delivers({Attributes(list)}));
  SKelServiceAttributeSearchResult found("before");
  found.Attributes[Type::ATTR_OPERATION] = "7";
  EXPECT_THAT(
      CKelSLPClientImpl::FindAttributes(
          found, kUrl,
          std::vector<std::string>{"x-version", "x-ip-addresses", "x-server-name", "x-foo", "x-operation"},
          {"tamro"}, ""),
      SameResult(kSuccess));
  EXPECT_EQ(found.AttributeString, list);
  EXPECT_THAT(found.Attributes,
              ElementsAre(Pair(Type::ATTR_VERSION, "1.2"), Pair(Type::ATTR_IP_ADDRESSES, ""),
                          Pair(Type::ATTR_SERVER_NAME, "a,b")));
  EXPECT_THAT(scripted_slp::Calls("SLPFindAttrs"),
              ElementsAre("SLPFindAttrs(#3,service:x://h,TAMRO,x-version,x-ip-addresses,x-server-name,x-foo,"
                          "x-operation)"));
  EXPECT_EQ(scripted_slp::Calls().front(), "SLPOpen(en,0)=#3");
  EXPECT_EQ(scripted_slp::Calls().back(), "SLPClose(#3)");
}

TEST_F(AttributeSearch, EndsWithTheFirstReply) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Attributes("(x-version=1)"), Attributes("(x-version=2)")}));
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, kNoTags, {}, ""), SameResult(kSuccess));
  EXPECT_EQ(found.AttributeString, "(x-version=1)");
  EXPECT_THAT(scripted_slp::CallbackAnswers(), ElementsAre(SLP_FALSE));
}

TEST_F(AttributeSearch, SucceedsWhenNobodyAnswers) {
  InitializeCore();
  SKelServiceAttributeSearchResult found("before");
  found.Attributes[Type::ATTR_OPERATION] = "7";
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, std::vector<std::string>{"x-version"}, {}, ""),
              SameResult(kSuccess));
  EXPECT_EQ(found.AttributeString, "");
  EXPECT_THAT(found.Attributes, IsEmpty());
  EXPECT_THAT(scripted_slp::CallbackAnswers(), ElementsAre(SLP_FALSE));
}

TEST_F(AttributeSearch, TakesAMissingListForAnEmptyOne) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Code(SLP_OK)}));
  SKelServiceAttributeSearchResult found("before");
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, kNoTags, {}, ""), SameResult(kSuccess));
  EXPECT_EQ(found.AttributeString, "");
}

TEST_F(AttributeSearch, AsksForAllAttributesWithoutTags) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Attributes("(x-version=1.2)")}));
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, kNoTags, {}, ""), SameResult(kSuccess));
  EXPECT_EQ(found.AttributeString, "(x-version=1.2)");
  EXPECT_THAT(found.Attributes, IsEmpty());
  EXPECT_THAT(scripted_slp::Calls("SLPFindAttrs"), ElementsAre("SLPFindAttrs(#3,service:x://h,,)"));
}

TEST_F(AttributeSearch, SendsATagOnceHoweverItIsWritten) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Attributes("(x-version=1.2)")}));
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl,
                                                std::vector<std::string>{"x-version", "X-VERSION"}, {}, ""),
              SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls("SLPFindAttrs"), ElementsAre("SLPFindAttrs(#3,service:x://h,,x-version)"));
  EXPECT_THAT(found.Attributes, ElementsAre(Pair(Type::ATTR_VERSION, "1.2")));
}

TEST_F(AttributeSearch, KnowsTagsOnlyAsTheyAreSpelt) {
  InitializeCore();
  scripted_slp::Always(Function::kFindAttrs, Delivers({Attributes("(x-version=1.2)")}));
  for (const char* tag : {"X-Version", " x-version "}) {
    SKelServiceAttributeSearchResult found;
    EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, std::vector<std::string>{tag}, {}, ""),
                SameResult(kSuccess));
    EXPECT_THAT(found.Attributes, IsEmpty());
  }
}

TEST_F(AttributeSearch, LeavesOutValuesThatCannotBeRead) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Attributes("(x-version=\\zz),(x-operation=1)")}));
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl,
                                                std::vector<std::string>{"x-version", "x-operation"}, {}, ""),
              SameResult(kSuccess));
  EXPECT_THAT(found.Attributes, ElementsAre(Pair(Type::ATTR_OPERATION, "1")));
}

TEST_F(AttributeSearch, AsksOneAddressOnly) {
  InitializeCore();
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, kUrl, kNoTags, {}, "10.0.0.5"), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,0)=#3", "SLPAssociateIP(#3,10.0.0.5)",
                                                 "SLPFindAttrs(#3,service:x://h,,)", "SLPClose(#3)"));
}

TEST_F(AttributeSearch, RefusesBadScopesFirst) {
  InitializeCore();
  EXPECT_THAT(FailingSearch({"x_bad"}, {"a+b"}),
              SameResult(Failure(SResult::ERR_SCOPE_BAD_CHARACTERS,
                                 "kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope",
                                 "scope = A+B")));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(AttributeSearch, RefusesBadTags) {
  const std::string trail = "kelsd::CKelSLPImpl::CreateAttributeTagsList kelsd::CKelSLPImpl::ValidateTag";
  InitializeCore();
  EXPECT_THAT(FailingSearch({"x-version", "x_bad"}),
              SameResult(Failure(SResult::ERR_TAG_BAD_CHARACTERS, trail, "tag: x_bad")));
  EXPECT_THAT(FailingSearch({"x-version", " "}), SameResult(Failure(SResult::ERR_TAG_EMPTY, trail)));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(AttributeSearch, TellsThatNoHandleOpens) {
  InitializeCore();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(FailingSearch(), SameResult(Failure(SResult::ERR_BASIC_NETWORK_INIT_FAILED,
                                                  "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
}

TEST_F(AttributeSearch, TellsThatTheAddressIsRefused) {
  InitializeCore();
  Next(Function::kAssociateIP, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(FailingSearch({}, {}, "nowhere"),
              SameResult(Failure(SResult::ERR_INVALID_PARAMETER,
                                 "kelsd::CKelSLPImpl::SLPHandleAssociateIP SLPAssociateIP")));
}

TEST_F(AttributeSearch, TranslatesWhatTheCallReturns) {
  InitializeCore();
  for (const SearchCode& row : FailingSearchCodes()) {
    Next(Function::kFindAttrs, Returns(row.slp));
    EXPECT_THAT(FailingSearch(), SameResult(Failure(row.error, "SLPFindAttrs")));
  }
}

TEST_F(AttributeSearch, TranslatesWhatTheCallbackIsTold) {
  InitializeCore();
  for (const SearchCode& row : FailingSearchCodes()) {
    Next(Function::kFindAttrs, Delivers({Code(row.slp), Attributes("(x-version=1)")}));
    EXPECT_THAT(FailingSearch(), SameResult(Failure(row.error, "SLPFindAttrs callback")));
  }
}

TEST_F(AttributeSearch, TurnsExceptionsIntoResults) {
  InitializeCore();
  scripted_slp::Always(Function::kFindAttrs, Delivers({Attributes("(x-version=1)")}));
  for (const Function function : {Function::kOpen, Function::kAssociateIP, Function::kFindAttrs,
                                  Function::kParseAttrs, Function::kUnescape}) {
    Next(function, Throws(std::bad_alloc()));
    EXPECT_THAT(FailingSearch({"x-version"}, {}, "10.0.0.5"),
                SameResult(Failure(SResult::ERR_OUT_OF_MEMORY, "", std::bad_alloc().what())));
    Next(function, Throws(std::runtime_error("broken")));
    EXPECT_THAT(FailingSearch({"x-version"}, {}, "10.0.0.5"),
                SameResult(Failure(SResult::ERR_BASIC_API, "", "broken")));
  }
}

TEST_F(AttributeSearch, SurvivesEveryFailingAllocation) {
  InitializeCore();
  scripted_slp::Always(
      Function::kFindAttrs,
      Delivers(
          {Attributes("(x-version=a value that is too long for small texts),(x-server-name=another one)")}));
  const std::string url = "service:a-service-type-too-long-for-small-texts://h";
  const std::vector<Type::EAttr> tags = {Type::ATTR_VERSION, Type::ATTR_SERVER_NAME};
  const std::vector<std::string> scopes = {"a-scope-that-is-too-long-for-small-texts"};
  const std::string address = "10.0.0.5";
  SKelServiceAttributeSearchResult found;
  int disturbed = 0;
  FailEachAllocation([&] { return CKelSLPClientImpl::FindAttributes(found, url, tags, scopes, address); },
                     [&](const SResult& result) {
                       ++disturbed;
                       EXPECT_EQ(result, SResult::ERR_OUT_OF_MEMORY);
                       EXPECT_EQ(found.AttributeString, "");
                       EXPECT_THAT(found.Attributes, IsEmpty());
                       EXPECT_EQ(scripted_slp::OpenHandles(), 1);
                       EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
                     });
  EXPECT_GT(disturbed, 10);
  EXPECT_EQ(found.Attributes.size(), 2U);
}

TEST_F(AttributeSearch, TakesTagsByTheirValues) {
  InitializeCore();
  Next(Function::kFindAttrs, Delivers({Attributes("(x-version=1),(x-operation=2)")}));
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(
      CKelSLPClientImpl::FindAttributes(
          found, kUrl, std::vector<Type::EAttr>{Type::ATTR_OPERATION, Type::ATTR_NONE, Type::ATTR_VERSION},
          {"lab"}, "10.0.0.5"),
      SameResult(kSuccess));
  EXPECT_THAT(found.Attributes, ElementsAre(Pair(Type::ATTR_VERSION, "1"), Pair(Type::ATTR_OPERATION, "2")));
  EXPECT_THAT(scripted_slp::Calls("SLPFindAttrs"),
              ElementsAre("SLPFindAttrs(#3,service:x://h,LAB,x-operation,x-version)"));
  EXPECT_THAT(scripted_slp::Calls("SLPAssociateIP"), ElementsAre("SLPAssociateIP(#3,10.0.0.5)"));
}

TEST_F(AttributeSearch, TakesUrlTagsAndScopesFromAServiceType) {
  InitializeCore();
  const CKelServiceTypeZDREST type("10.0.0.5:8080", 60);
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, type, "10.0.0.6"), SameResult(kSuccess));
  std::string tags;
  for (const Type::EAttr tag : type.GetAttributeTags()) {
    tags += (tags.empty() ? "" : ",") + Type::ToString(tag);
  }
  EXPECT_THAT(scripted_slp::Calls("SLPFindAttrs"),
              ElementsAre("SLPFindAttrs(#3," + type.GetServiceURL() + ",TAMRO," + tags + ")"));
  EXPECT_THAT(scripted_slp::Calls("SLPAssociateIP"), ElementsAre("SLPAssociateIP(#3,10.0.0.6)"));
}

TEST_F(AttributeSearch, FailuresReadTheSameInEachForm) {
  InitializeCore();
  scripted_slp::Always(Function::kFindAttrs, Returns(SLP_NETWORK_TIMED_OUT));
  const SResult failure = Failure(SResult::ERR_NETWORK_TIMED_OUT, "SLPFindAttrs");
  SKelServiceAttributeSearchResult found;
  EXPECT_THAT(
      CKelSLPClientImpl::FindAttributes(found, kUrl, std::vector<Type::EAttr>{Type::ATTR_VERSION}, {}, ""),
      SameResult(failure));
  EXPECT_THAT(CKelSLPClientImpl::FindAttributes(found, CKelServiceTypeZDREST("10.0.0.5:8080", 60), ""),
              SameResult(failure));
}

}  // namespace
}  // namespace kelsd
