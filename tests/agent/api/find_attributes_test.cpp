// SLPFindAttrs: by URL and by type, one agent and everyone.
#include "api_fixture.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

const std::string kUrl = "service:printer://one:515";

SlpPeer::Script Answering(const std::string& attributes) {
  return [=](const PeerRequest& request) {
    return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, attributes, {}})}};
  };
}

SLPBoolean SLPCALLBACK NoCall(SLPHandle, const char*, SLPError, void*) {
  ADD_FAILURE() << "a refused parameter is reported to no callback";
  return SLP_TRUE;
}

class FindAttributesTest : public ApiTest {};

TEST_F(FindAttributesTest, BadParametersAreReturnedAndNotReported) {
  int foreign = 0;
  EXPECT_EQ(SLPFindAttrs(nullptr, kUrl.c_str(), "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindAttrs(&foreign, kUrl.c_str(), "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindAttrs(handle_, nullptr, "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindAttrs(handle_, "", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindAttrs(handle_, kUrl.c_str(), "", "", nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindAttrs(handle_, "not a url", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
}

TEST_F(FindAttributesTest, SendsUrlScopesAndTags) {
  AskOnly("127.0.0.1");
  SlpPeer peer(Answering("(a=1)"), AtPort());
  EXPECT_EQ(FindAttributes(kUrl, "TAMRO", "a,b*"), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
  EXPECT_EQ(FindAttributes("service:printer"), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
  EXPECT_EQ(std::get<AttrRqst>(peer.requests().at(0).message->body),
            (AttrRqst{"", kUrl, "TAMRO", "a,b*", ""}));
  EXPECT_EQ(std::get<AttrRqst>(peer.requests().at(1).message->body),
            (AttrRqst{"", "service:printer", "DEFAULT", "", ""}));
}

TEST_F(FindAttributesTest, AnEmptyListOfOneAgentIsAResult) {
  AskOnly("127.0.0.1");
  SlpPeer peer(Answering(""), AtPort());
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {"0 ", kLastCall}}));
}

TEST_F(FindAttributesTest, TheAgentsErrorIsTheSearchs) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, AttrRply{Error::kLanguageNotSupported, "", {}})}};
      },
      AtPort());
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_LANGUAGE_NOT_SUPPORTED, {"-1 (null)", kLastCall}}));
}

TEST_F(FindAttributesTest, ByUrlTheFirstListEndsTheSearch) {
  Set("net.slp.multicastTimeouts", "3000");
  Set("net.slp.multicastMaximumWait", "3000");
  SlpPeer peer(Answering("(a=1)"), AtPort());
  ExpectTakes(0, 1000, [&] {
    EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
  });
}

TEST_F(FindAttributesTest, ByUrlAnEmptyListDoesNotHideAnotherAgents) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  SlpPeer ignorant(Answering(""), AtPort());
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, "(a=1)", {}}),
                                       .delay = std::chrono::milliseconds(20)}};
      },
      AtPort("127.0.0.2"));
  Set("net.slp.interfaces", "127.0.0.1,127.0.0.2");
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
}

TEST_F(FindAttributesTest, ByTypeEachDifferentListIsDelivered) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  const auto answer = [](const std::string& attributes) {
    return [=](const PeerRequest& request) {
      return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, attributes, {}})},
                                    {.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, "(a=1)", {}}),
                                     .delay = std::chrono::milliseconds(20),
                                     .from_elsewhere = true}};
    };
  };
  SlpPeer peer(answer("(a=1)"), AtPort());
  EXPECT_EQ(FindAttributes("service:printer"), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
  SlpPeer second(answer("(b=2)"), AtPort("127.0.0.2"));
  Set("net.slp.interfaces", "127.0.0.2");
  EXPECT_EQ(FindAttributes("service:printer").calls.size(), 3U);
}

TEST_F(FindAttributesTest, NobodyAnswers) {
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {kLastCall}}));
}

TEST_F(FindAttributesTest, TheCallbackEndsTheSearch) {
  SlpPeer peer(Answering("(a=1)"), AtPort());
  EXPECT_EQ(FindAttributes("service:printer", "", "", 1), (SearchOutcome{SLP_OK, {"0 (a=1)"}}));
}

TEST_F(FindAttributesTest, ACutReplyIsFetchedByTcpAndNotDelivered) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        if (request.transport == PeerRequest::Transport::kStream) {
          return std::vector<PeerReply>{
              {.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, "(a=1),(b=2)", {}})}};
        }
        Message reply = ReplyTo(request, AttrRply{Error::kOk, "", {}});
        reply.header.overflow = true;
        return std::vector<PeerReply>{{.bytes = Encode(reply).value()}};
      },
      AtPort());
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {"0 (a=1),(b=2)", kLastCall}}));
}

TEST_F(FindAttributesTest, AListWithNulIsLeftOut) {
  AskOnly("127.0.0.1");
  SlpPeer peer(Answering(std::string("(a=\0)", 5)), AtPort());
  EXPECT_EQ(FindAttributes(kUrl), (SearchOutcome{SLP_OK, {kLastCall}}));
}

}  // namespace
}  // namespace slp::support
