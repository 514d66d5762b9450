#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

constexpr const char* kUrl = "service:x://1";

std::optional<Message> Acknowledged(Error error) {
  return ReplyOf(SrvAck{error});
}

Message Fresh(SrvReg request) {
  Message message = MakeMessage(std::move(request));
  message.header.fresh = true;
  return message;
}

struct ErrorCase {
  const char* what;
  SrvReg request;
  Error error;
};

TEST(RegistrationRequestsTest, WhatIsMalformedIsRefused) {
  SrvReg no_lifetime = MakeSrvReg(kUrl, "service:x");
  no_lifetime.url.lifetime = 0;
  SrvReg signed_url = MakeSrvReg(kUrl, "service:x");
  signed_url.url.authentication = {{2, {1, 2, 3, 4, 5, 6}}};
  SrvReg signed_attributes = MakeSrvReg(kUrl, "service:x");
  signed_attributes.authentication = {{2, {1, 2, 3, 4, 5, 6}}};
  const ErrorCase cases[] = {
      {"lifetime 0", no_lifetime, Error::kInvalidRegistration},
      {"signed URL", signed_url, Error::kAuthenticationUnknown},
      {"signed attributes", signed_attributes, Error::kAuthenticationUnknown},
      {"no URL", MakeSrvReg("", "service:x"), Error::kInvalidRegistration},
      {"bad URL", MakeSrvReg("service:x", "service:x"), Error::kInvalidRegistration},
      {"no type", MakeSrvReg(kUrl, ""), Error::kInvalidRegistration},
      {"no scope", MakeSrvReg(kUrl, "service:x", "", ""), Error::kScopeNotSupported},
      {"scope not served", MakeSrvReg(kUrl, "service:x", "", "other"), Error::kScopeNotSupported},
      {"a=x=y", MakeSrvReg(kUrl, "service:x", "(a=x=y)"), Error::kInvalidRegistration},
      {"a_b", MakeSrvReg(kUrl, "service:x", "(a_b=1)"), Error::kInvalidRegistration},
      {"a=x!y", MakeSrvReg(kUrl, "service:x", "(a=x!y)"), Error::kInvalidRegistration},
      {"(a=1)(b=2)", MakeSrvReg(kUrl, "service:x", "(a=1)(b=2)"), Error::kInvalidRegistration},
      {"a=,1", MakeSrvReg(kUrl, "service:x", "(a=,1)"), Error::kInvalidRegistration},
      {"a=x<y", MakeSrvReg(kUrl, "service:x", "(a=x<y)"), Error::kInvalidRegistration},
      {"\\zz", MakeSrvReg(kUrl, "service:x", "(a=\\zz)"), Error::kInvalidRegistration},
      {"mixed", MakeSrvReg(kUrl, "service:x", "(a=1,x)"), Error::kInvalidRegistration},
  };
  for (const ErrorCase& row : cases) {
    DaemonLogic daemon;
    EXPECT_EQ(daemon.Ask(Fresh(row.request), kOwnHost), Acknowledged(row.error)) << row.what;
    EXPECT_EQ(daemon.registry.size(), 0U) << row.what;
  }
}

struct OwnHostCase {
  const char* check_source_address;
  RequestOrigin origin;
};

TEST(RegistrationRequestsTest, OnlyTheOwnHostRegistersWithAServiceAgent) {
  const SrvDereg deregistration{"DEFAULT", {0, kUrl, {}}, ""};
  std::vector<OwnHostCase> cases;
  for (const RequestOrigin& origin : {kNeighbour, kStranger, kStreamPeer}) {
    cases.push_back({"true", origin});
    cases.push_back({"false", origin});
  }
  for (const OwnHostCase& row : cases) {
    DaemonLogic daemon;
    Properties properties;
    properties.Set("net.slp.checkSourceAddr", row.check_source_address);
    daemon.handler.SetSettings(AgentSettings::From(properties));
    EXPECT_EQ(daemon.Ask(Fresh(MakeSrvReg(kUrl, "service:x")), row.origin),
              Acknowledged(Error::kMessageNotSupported));
    EXPECT_EQ(daemon.registry.size(), 0U);
    ASSERT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x")), Error::kOk);
    EXPECT_EQ(daemon.Ask(deregistration, row.origin), Acknowledged(Error::kMessageNotSupported));
    EXPECT_EQ(daemon.registry.size(), 1U);
    EXPECT_EQ(daemon.Ask(deregistration, kOwnHost), Acknowledged(Error::kOk));
    EXPECT_EQ(daemon.registry.size(), 0U);
  }
}

TEST(RegistrationRequestsTest, TheUrlMayNameAnyHost) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Register(MakeSrvReg("service:x://192.0.2.77:80", "service:x")), Error::kOk);
  EXPECT_EQ(daemon.Ask(SrvDereg{"DEFAULT", {0, "service:x://192.0.2.77:80", {}}, ""}, kOwnHost),
            Acknowledged(Error::kOk));
  EXPECT_EQ(daemon.registry.size(), 0U);
}

TEST(RegistrationRequestsTest, NothingIsRegisteredThroughAGroup) {
  DaemonLogic daemon;
  RequestOrigin origin = kOwnHost;
  Message request = Fresh(MakeSrvReg(kUrl, "service:x"));
  request.header.request_multicast = true;
  EXPECT_EQ(daemon.Ask(request, origin), std::nullopt);
  origin.transport = Transport::kUdpMulticast;
  request.header.request_multicast = false;
  EXPECT_EQ(daemon.Ask(request, origin), std::nullopt);
  EXPECT_EQ(daemon.Ask(SrvDereg{"DEFAULT", {0, kUrl, {}}, ""}, origin), std::nullopt);
  EXPECT_EQ(daemon.registry.size(), 0U);
}

TEST(RegistrationRequestsTest, ItIsRegisteredInTheServedScopes) {
  DaemonLogic daemon;
  ASSERT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "", "tamro,other,TAMRO")), Error::kOk);
  EXPECT_EQ(daemon.registry.Find(kUrl, "en")->scopes, "tamro");
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "(a=1)", "other,tamro"), false), Error::kOk);
}

TEST(RegistrationRequestsTest, FreshReplacesAndNotFreshUpdates) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "(a=1)"), false), Error::kInvalidUpdate);
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "(a=1),(b=2)")), Error::kOk);
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "(b=3)"), false), Error::kOk);
  EXPECT_EQ(daemon.Ask(MakeAttrRqst(kUrl)), ReplyOf(AttrRply{Error::kOk, "(a=1),(b=3)", {}}));
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x", "(b=3)", "TAMRO"), false),
            Error::kScopeNotSupported);
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:y", "(b=3)"), false), Error::kInvalidUpdate);
  EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:y", "(c=4)", "TAMRO")), Error::kOk);
  EXPECT_EQ(daemon.Ask(MakeAttrRqst(kUrl, "", "TAMRO")), ReplyOf(AttrRply{Error::kOk, "(c=4)", {}}));
}

struct DeregistrationCase {
  const char* url;
  const char* scopes;
  const char* tags;
  Error error;
  const char* left;  ///< attributes of what is still registered; null: nothing
};

TEST(RegistrationRequestsTest, Deregistration) {
  const DeregistrationCase cases[] = {
      {kUrl, "DEFAULT,TAMRO", "", Error::kOk, nullptr},
      {kUrl, "tamro,default", "", Error::kOk, nullptr},
      {kUrl, "DEFAULT,TAMRO,other", "", Error::kOk, nullptr},
      {kUrl, "TAMRO", "", Error::kScopeNotSupported, "(a=1),(b=2),c"},
      {kUrl, "", "", Error::kScopeNotSupported, "(a=1),(b=2),c"},
      {"service:x://2", "DEFAULT,TAMRO", "", Error::kInvalidRegistration, "(a=1),(b=2),c"},
      {kUrl, "DEFAULT,TAMRO", "A,C", Error::kOk, "(b=2)"},
      {kUrl, "DEFAULT,TAMRO", "*", Error::kOk, ""},
      {kUrl, "DEFAULT,TAMRO", ",a", Error::kOk, "(b=2),c"},
      {kUrl, "TAMRO", "a", Error::kScopeNotSupported, "(a=1),(b=2),c"},
      {kUrl, "DEFAULT,TAMRO", "a(b", Error::kParseError, "(a=1),(b=2),c"},
  };
  for (const DeregistrationCase& row : cases) {
    DaemonLogic daemon;
    daemon.Register(MakeSrvReg(kUrl, "service:x", "(a=1),(b=2),c", "DEFAULT,TAMRO"));
    EXPECT_EQ(daemon.Ask(SrvDereg{row.scopes, {0, row.url, {}}, row.tags}, kOwnHost), Acknowledged(row.error))
        << row.scopes << ' ' << row.tags;
    const std::optional<RegistrationView> left = daemon.registry.Find(kUrl, "en");
    EXPECT_EQ(left.has_value(), row.left != nullptr);
    if (left && row.left != nullptr) {
      EXPECT_EQ(left->attributes, row.left);
    }
  }
}

struct ExtensionCase {
  const char* what;
  std::vector<Extension> extensions;
  Error error;
  std::vector<std::uint32_t> watched;
};

TEST(ProcessBindingTest, TheExtensionBindsToAProcess) {
  const Bytes pid_17 = {0, 0, 0, 17};
  const Bytes pid_max = {0xFF, 0xFF, 0xFF, 0xFF};
  const ExtensionCase cases[] = {
      {"none", {}, Error::kOk, {}},
      {"standard", {{kExtensionProcessId, pid_17}}, Error::kOk, {17}},
      {"experimental", {{kExtensionProcessIdExperimental, pid_17}}, Error::kOk, {17}},
      {"both", {{kExtensionProcessIdExperimental, pid_max}, {kExtensionProcessId, pid_17}}, Error::kOk, {17}},
      {"largest", {{kExtensionProcessId, pid_max}}, Error::kOk, {0xFFFFFFFF}},
      {"zero", {{kExtensionProcessId, {0, 0, 0, 0}}}, Error::kOk, {}},
      {"too short", {{kExtensionProcessId, {0, 0, 17}}}, Error::kParseError, {}},
      {"too long", {{kExtensionProcessId, {0, 0, 0, 0, 17}}}, Error::kParseError, {}},
      {"experimental too short", {{kExtensionProcessIdExperimental, {17}}}, Error::kOk, {}},
  };
  for (const ExtensionCase& row : cases) {
    DaemonLogic daemon;
    EXPECT_EQ(daemon.Register(MakeSrvReg(kUrl, "service:x"), true, "en", row.extensions), row.error)
        << row.what;
    EXPECT_EQ(daemon.registry.WatchedProcesses(), row.watched) << row.what;
  }
}

TEST(ProcessBindingTest, AProcessThatIsNotToBeSeenIsNotWatched) {
  DaemonLogic daemon;
  daemon.missing_processes = {17};
  EXPECT_EQ(
      daemon.Register(MakeSrvReg(kUrl, "service:x"), true, "en", {{kExtensionProcessId, {0, 0, 0, 17}}}),
      Error::kOk);
  EXPECT_THAT(daemon.registry.WatchedProcesses(), IsEmpty());
  EXPECT_EQ(daemon.registry.size(), 1U);
  EXPECT_THAT(daemon.events.Take(), Contains("not watched 17 service:x://1"));
}

TEST(ProcessBindingTest, ThePropertySwitchesItOff) {
  DaemonLogic daemon;
  AgentSettings settings = TestSettings();
  settings.watch_registration_pid = false;
  daemon.handler.SetSettings(settings);
  EXPECT_EQ(
      daemon.Register(MakeSrvReg(kUrl, "service:x"), true, "en", {{kExtensionProcessId, {0, 0, 0, 17}}}),
      Error::kOk);
  EXPECT_THAT(daemon.registry.WatchedProcesses(), IsEmpty());
}

}  // namespace
}  // namespace slp
