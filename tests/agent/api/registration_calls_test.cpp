// SLPReg, SLPDereg and SLPDelAttrs against a scripted daemon.
#include <gmock/gmock.h>

#include "api_fixture.h"
#include "net/local_process.h"
#include "support/under_wine/under_wine.h"

namespace slp::support {
namespace {

using Transport = PeerRequest::Transport;

const std::string kUrl = "service:printer:lpr://one:515/queue";

struct ReportOutcome {
  SLPError result;
  std::vector<SLPError> reports;
  bool operator==(const ReportOutcome&) const = default;
};

void PrintTo(const ReportOutcome& outcome, std::ostream* out) {
  *out << outcome.result << ' ' << testing::PrintToString(outcome.reports);
}

ReportOutcome Both(SLPError error) {
  return {error, {error}};
}

ReportOutcome OnlyReturned(SLPError error) {
  return {error, {}};
}

void SLPCALLBACK NoteReport(SLPHandle, SLPError error, void* cookie) {
  static_cast<std::vector<SLPError>*>(cookie)->push_back(error);
}

SlpPeer::Script Acknowledging(Error error = Error::kOk) {
  return [=](const PeerRequest& request) {
    return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvAck{error})}};
  };
}

class RegistrationCalls : public ApiTest {
 protected:
  ReportOutcome Register(const char* url = kUrl.c_str(), const char* attributes = "(a=1)",
                         const char* type = nullptr, SLPBoolean fresh = SLP_TRUE) {
    ReportOutcome outcome{};
    outcome.result = SLPReg(handle_, url, 300, type, attributes, fresh, NoteReport, &outcome.reports);
    return outcome;
  }

  ReportOutcome Deregister(const char* url = kUrl.c_str()) {
    ReportOutcome outcome{};
    outcome.result = SLPDereg(handle_, url, NoteReport, &outcome.reports);
    return outcome;
  }

  ReportOutcome DeleteAttributes(const char* url, const char* tags) {
    ReportOutcome outcome{};
    outcome.result = SLPDelAttrs(handle_, url, tags, NoteReport, &outcome.reports);
    return outcome;
  }

  /// The only message that the daemon got, without its XID.
  static Message OnlyMessage(const SlpPeer& daemon) {
    EXPECT_EQ(daemon.requests().size(), 1U);
    Message message = daemon.requests().at(0).message.value();
    EXPECT_NE(message.header.xid, 0);
    message.header.xid = 0;
    return message;
  }

  static Message Registration(const SrvReg& body) {
    Message message{Header{}, body};
    message.header.fresh = true;
    return message;
  }
};

TEST_F(RegistrationCalls, RegistersInTheConfiguredScopes) {
  Set("net.slp.useScopes", "TAMRO,Lab");
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(Register(), Both(SLP_OK));
  EXPECT_EQ(OnlyMessage(daemon),
            Registration({{300, kUrl, {}}, "service:printer:lpr", "TAMRO,Lab", "(a=1)", {}}));
}

TEST_F(RegistrationCalls, AnUpdateIsNotFresh) {
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(Register(kUrl.c_str(), "", nullptr, SLP_FALSE), Both(SLP_OK));
  Message expected = Registration({{300, kUrl, {}}, "service:printer:lpr", "DEFAULT", "", {}});
  expected.header.fresh = false;
  EXPECT_EQ(OnlyMessage(daemon), expected);
}

TEST_F(RegistrationCalls, IsBoundToThisProcess) {
  Set("net.slp.watchRegistrationPID", "true");
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(Register(), Both(SLP_OK));
  const std::uint32_t id = CurrentProcessId();
  const Bytes payload = {static_cast<std::uint8_t>(id >> 24), static_cast<std::uint8_t>(id >> 16),
                         static_cast<std::uint8_t>(id >> 8), static_cast<std::uint8_t>(id)};
  Message expected = Registration({{300, kUrl, {}}, "service:printer:lpr", "DEFAULT", "(a=1)", {}});
  expected.header.extensions = {{0x4001, payload}, {0x9799, payload}};
  EXPECT_EQ(OnlyMessage(daemon), expected);
}

struct TypeOfUrl {
  const char* url;
  const char* type;
  const char* registered;
};

class RegisteredTypes : public RegistrationCalls, public testing::WithParamInterface<TypeOfUrl> {};

TEST_P(RegisteredTypes, ComeFromTheUrlUnlessItIsNoServiceUrl) {
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(Register(GetParam().url, "", GetParam().type), Both(SLP_OK));
  EXPECT_EQ(std::get<SrvReg>(OnlyMessage(daemon).body).service_type, GetParam().registered);
}

INSTANTIATE_TEST_SUITE_P(
    RegistrationCalls, RegisteredTypes,
    testing::Values(TypeOfUrl{"service:x://h", "service:y", "service:x"},
                    TypeOfUrl{"SERVICE:x://h", "service:y", "SERVICE:x"},
                    TypeOfUrl{"http://h/p", nullptr, "http"}, TypeOfUrl{"http://h/p", "", "http"},
                    TypeOfUrl{"http://h/p", "service:web", "service:web"},
                    TypeOfUrl{"service:servicehost.tamro:://h:1", nullptr, "service:servicehost.tamro:"}));

TEST_F(RegistrationCalls, BadParametersAreReturnedAndNotReported) {
  std::vector<SLPError> reports;
  int foreign = 0;
  const char* url = kUrl.c_str();
  EXPECT_EQ(Register(nullptr), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(Register(""), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(Register(url, nullptr), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(SLPReg(handle_, url, 0, nullptr, "", SLP_TRUE, NoteReport, &reports), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPReg(handle_, url, 1, nullptr, "", SLP_TRUE, nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPReg(nullptr, url, 1, nullptr, "", SLP_TRUE, NoteReport, &reports), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPReg(&foreign, url, 1, nullptr, "", SLP_TRUE, NoteReport, &reports), SLP_PARAMETER_BAD);
  EXPECT_EQ(Deregister(nullptr), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(Deregister(""), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(SLPDereg(handle_, url, nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(DeleteAttributes("", "a"), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(DeleteAttributes(nullptr, "a"), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(DeleteAttributes(url, ""), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(DeleteAttributes(url, nullptr), OnlyReturned(SLP_PARAMETER_BAD));
  EXPECT_EQ(SLPDelAttrs(handle_, url, "a", nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_TRUE(reports.empty());
}

TEST_F(RegistrationCalls, WhatDoesNotParseIsRefusedWithoutTraffic) {
  SlpPeer daemon(Acknowledging(), AtPort());
  for (const char* url : {"not a url", "service:x"}) {
    EXPECT_EQ(Register(url), Both(SLP_INVALID_REGISTRATION)) << url;
  }
  for (const char* attributes : {"(a=x=y)", "(a_b=1)", "(a=x!y)", "(a=1)(b=2)", "(a=,1)", "(a=x<y)",
                                 "(a=\x01)", "(a=\\zz)", "(a=1", "a=1)"}) {
    EXPECT_EQ(Register(kUrl.c_str(), attributes), Both(SLP_INVALID_REGISTRATION)) << attributes;
  }
  EXPECT_EQ(Register("http://h", "", "no type"), Both(SLP_INVALID_REGISTRATION));
  EXPECT_TRUE(daemon.requests().empty());
}

TEST_F(RegistrationCalls, TheDaemonsErrorIsReturnedAndReported) {
  SlpPeer daemon(Acknowledging(Error::kScopeNotSupported), AtPort());
  EXPECT_EQ(Register(), Both(SLP_SCOPE_NOT_SUPPORTED));
  EXPECT_EQ(Deregister(), Both(SLP_SCOPE_NOT_SUPPORTED));
  EXPECT_EQ(DeleteAttributes(kUrl.c_str(), "a"), Both(SLP_SCOPE_NOT_SUPPORTED));
}

TEST_F(RegistrationCalls, WithoutADaemon) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kRefusalsUnheard;
  }
  EXPECT_EQ(Register(), Both(SLP_NETWORK_INIT_FAILED));
  EXPECT_EQ(Deregister(), Both(SLP_NETWORK_INIT_FAILED));
}

TEST_F(RegistrationCalls, WithoutADaemonALongOneFailsToo) {
  EXPECT_EQ(Register(kUrl.c_str(), ("(a=" + std::string(2000, 'x') + ")").c_str()),
            Both(SLP_NETWORK_INIT_FAILED));
}

TEST_F(RegistrationCalls, ADaemonThatIsSilentTimesOut) {
  Set("net.slp.unicastMaximumWait", "200");
  SlpPeer daemon([](const PeerRequest&) { return std::vector<PeerReply>(); }, AtPort());
  EXPECT_EQ(Register(), Both(SLP_NETWORK_TIMED_OUT));
}

TEST_F(RegistrationCalls, ALostAcknowledgementIsAskedForAgain) {
  Set("net.slp.unicastTimeouts", "100,5000");
  std::atomic<int> count = 0;
  SlpPeer daemon(
      [&](const PeerRequest& request) {
        return ++count == 1 ? std::vector<PeerReply>() : Acknowledging()(request);
      },
      AtPort());
  EXPECT_EQ(Register(), Both(SLP_OK));
  ASSERT_EQ(daemon.requests().size(), 2U);
  EXPECT_EQ(daemon.requests()[0].bytes, daemon.requests()[1].bytes);
}

TEST_F(RegistrationCalls, ALongRegistrationGoesByTcp) {
  SlpPeer daemon(Acknowledging(), AtPort());
  const std::string attributes = "(a=" + std::string(30000, 'x') + ")";
  EXPECT_EQ(Register(kUrl.c_str(), attributes.c_str()), Both(SLP_OK));
  EXPECT_EQ(daemon.requests().at(0).transport, Transport::kStream);
  EXPECT_EQ(OnlyMessage(daemon),
            Registration({{300, kUrl, {}}, "service:printer:lpr", "DEFAULT", attributes, {}}));
}

TEST_F(RegistrationCalls, ADaemonOnTheSelectedInterfacesIsFound) {
  Set("net.slp.interfaces", "127.0.0.2,127.0.0.3");
  SlpPeer daemon(Acknowledging(), AtPort("127.0.0.3"));
  EXPECT_EQ(Register(), Both(SLP_OK));
}

TEST_F(RegistrationCalls, TheDaemonIsAskedEvenWhenSearchesGoElsewhere) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  SlpPeer elsewhere(Acknowledging(Error::kParseError), AtPort("127.0.0.2"));
  SlpPeer daemon(Acknowledging(), AtPort());
  AskOnly("127.0.0.2");
  EXPECT_EQ(Register(), Both(SLP_OK));
  EXPECT_TRUE(elsewhere.requests().empty());
}

TEST_F(RegistrationCalls, DeregistersInTheConfiguredScopes) {
  Set("net.slp.useScopes", "DEFAULT,TAMRO");
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(Deregister(), Both(SLP_OK));
  EXPECT_EQ(OnlyMessage(daemon), (Message{Header{}, SrvDereg{"DEFAULT,TAMRO", {0, kUrl, {}}, ""}}));
}

TEST_F(RegistrationCalls, DeletesAttributesByTheirTags) {
  SlpPeer daemon(Acknowledging(), AtPort());
  EXPECT_EQ(DeleteAttributes(kUrl.c_str(), "a,b*"), Both(SLP_OK));
  EXPECT_EQ(OnlyMessage(daemon), (Message{Header{}, SrvDereg{"DEFAULT", {0, kUrl, {}}, "a,b*"}}));
}

}  // namespace
}  // namespace slp::support
