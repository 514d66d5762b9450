// SLPFindSrvTypes: naming authorities, one merged list.
#include <gmock/gmock.h>

#include "api_fixture.h"
#include "support/under_wine/under_wine.h"

namespace slp::support {
namespace {

SlpPeer::Script Answering(const std::string& types) {
  return [=](const PeerRequest& request) {
    return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvTypeRply{Error::kOk, types})}};
  };
}

SLPBoolean SLPCALLBACK NoCall(SLPHandle, const char*, SLPError, void*) {
  ADD_FAILURE() << "a refused parameter is reported to no callback";
  return SLP_TRUE;
}

class FindServiceTypesTest : public ApiTest {};

TEST_F(FindServiceTypesTest, BadParametersAreReturnedAndNotReported) {
  int foreign = 0;
  EXPECT_EQ(SLPFindSrvTypes(nullptr, "*", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvTypes(&foreign, "*", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvTypes(handle_, nullptr, "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvTypes(handle_, "*", "", nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvTypes(handle_, "IANA", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvTypes(handle_, "iana", "", NoCall, nullptr), SLP_PARAMETER_BAD);
}

TEST_F(FindServiceTypesTest, NamingAuthoritiesOnTheWire) {
  AskOnly("127.0.0.1");
  // Long enough that a busy machine doesn't have it asked twice.
  Set("net.slp.unicastTimeouts", "5000");
  Set("net.slp.unicastMaximumWait", "10000");
  SlpPeer peer(Answering("service:x"), AtPort());
  const SearchOutcome found{SLP_OK, {"0 service:x", kLastCall}};
  EXPECT_EQ(FindTypes("*", "A,B"), found);
  EXPECT_EQ(FindTypes(""), found);
  EXPECT_EQ(FindTypes("tamro", nullptr), found);
  std::vector<SrvTypeRqst> requests;
  for (const PeerRequest& request : peer.requests()) {
    requests.push_back(std::get<SrvTypeRqst>(request.message->body));
  }
  EXPECT_EQ(requests, (std::vector<SrvTypeRqst>{
                          {"", std::nullopt, "A,B"}, {"", "", "DEFAULT"}, {"", "tamro", "DEFAULT"}}));
}

TEST_F(FindServiceTypesTest, ListsOfAllAgentsAreMergedIntoOne) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  SlpPeer first(Answering("service:a,service:b.tamro:http"), AtPort());
  SlpPeer second(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, SrvTypeRply{Error::kOk, "SERVICE:A,service:c,,service:c"}),
             .delay = std::chrono::milliseconds(20)}};
      },
      AtPort("127.0.0.2"));
  Set("net.slp.interfaces", "127.0.0.1,127.0.0.2");
  EXPECT_EQ(FindTypes("*"),
            (SearchOutcome{SLP_OK, {"0 service:a,service:b.tamro:http,service:c", kLastCall}}));
}

TEST_F(FindServiceTypesTest, TheResultLimitCountsTypes) {
  Set("net.slp.maxResults", "2");
  SlpPeer peer(Answering("service:a,service:b,service:c"), AtPort());
  EXPECT_EQ(FindTypes("*"), (SearchOutcome{SLP_OK, {"0 service:a,service:b", kLastCall}}));
}

TEST_F(FindServiceTypesTest, NothingFound) {
  EXPECT_EQ(FindTypes("*"), (SearchOutcome{SLP_OK, {kLastCall}}));
  AskOnly("127.0.0.1");
  SlpPeer peer(Answering(""), AtPort());
  EXPECT_EQ(FindTypes("*"), (SearchOutcome{SLP_OK, {kLastCall}}));
}

TEST_F(FindServiceTypesTest, AnErrorIsReported) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, SrvTypeRply{Error::kMessageNotSupported, ""})}};
      },
      AtPort());
  EXPECT_EQ(FindTypes("*"), (SearchOutcome{SLP_NOT_IMPLEMENTED, {"-17 (null)", kLastCall}}));
}

}  // namespace
}  // namespace slp::support
