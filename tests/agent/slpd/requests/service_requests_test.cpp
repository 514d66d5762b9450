#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

class ServiceRequestsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    daemon.Register(MakeSrvReg("service:x.tamro:http://1", "service:x.tamro:http",
                               "(x-ip-addresses=10.0.0.1\\2C10.0.0.2),(x-version=)"));
    daemon.Register(MakeSrvReg("service:x.tamro:http://2", "service:x.tamro:http", "(a=1)", "tamro"), true,
                    "de");
  }

  std::optional<Message> Found(std::vector<std::string> urls) {
    SrvRply reply;
    for (std::string& url : urls) {
      reply.urls.push_back({3600, std::move(url), {}});
    }
    return ReplyOf(reply);
  }

  /// The reply with its URLs sorted: a search shows them in no particular order.
  std::optional<Message> AskSorted(const SrvRqst& request, const RequestOrigin& origin) {
    std::optional<Message> reply = daemon.Ask(request, origin);
    if (reply) {
      std::vector<UrlEntry>& urls = std::get<SrvRply>(reply->body).urls;
      std::sort(urls.begin(), urls.end(), [](const UrlEntry& a, const UrlEntry& b) { return a.url < b.url; });
    }
    return reply;
  }

  std::optional<Message> Failed(Error error) { return ReplyOf(SrvRply{error, {}}); }

  DaemonLogic daemon;
};

struct ServiceCase {
  const char* type;
  const char* predicate;
  const char* scopes;
  std::vector<std::string> urls;
};

TEST_F(ServiceRequestsTest, FindsByTypeScopeAndPredicate) {
  const ServiceCase cases[] = {
      {"service:x.tamro:http", "", "DEFAULT", {"service:x.tamro:http://1"}},
      {"service:x.tamro", "", "default , other", {"service:x.tamro:http://1"}},
      {" Service:X.Tamro ", "", "TAMRO", {"service:x.tamro:http://2"}},
      {"service:x.tamro", "", "DEFAULT,TAMRO", {"service:x.tamro:http://1", "service:x.tamro:http://2"}},
      {"service:x", "", "DEFAULT", {}},
      {"service:x.tamro", "(x-version=)", "DEFAULT", {"service:x.tamro:http://1"}},
      {"service:x.tamro", "(x-version=*)", "DEFAULT", {"service:x.tamro:http://1"}},
      {"service:x.tamro", "(x-ip-addresses=*,10.0.0.2)", "DEFAULT", {"service:x.tamro:http://1"}},
      {"service:x.tamro", "(x-ip-addresses=10.0.0.1\\2c10.0.0.2)", "DEFAULT", {"service:x.tamro:http://1"}},
      {"service:x.tamro", "(x-ip-addresses=10.0.0.1)", "DEFAULT", {}},
      {"service:y", "", "DEFAULT", {}},
  };
  for (const ServiceCase& row : cases) {
    const SrvRqst request = MakeSrvRqst(row.type, row.predicate, row.scopes);
    for (const RequestOrigin& origin : {kOwnHost, kNeighbour, kStreamPeer}) {
      EXPECT_EQ(AskSorted(request, origin), Found(row.urls)) << row.type << ' ' << row.predicate;
    }
    EXPECT_EQ(AskSorted(request, kGroupMember), row.urls.empty() ? std::nullopt : Found(row.urls))
        << row.type << ' ' << row.predicate;
  }
}

struct ErrorCase {
  const char* type;
  const char* predicate;
  const char* scopes;
  const char* spi;
  Error error;
};

TEST_F(ServiceRequestsTest, ErrorsGoToUnicastSendersOnly) {
  const ErrorCase cases[] = {
      {"", "", "DEFAULT", "", Error::kParseError},
      {"service:", "", "DEFAULT", "", Error::kParseError},
      {"service:x y", "", "DEFAULT", "", Error::kParseError},
      {"service:x.tamro", "(a=1", "DEFAULT", "", Error::kParseError},
      {"service:x.tamro", "a=1", "DEFAULT", "", Error::kParseError},
      {"service:x.tamro", "(a=\\zz)", "DEFAULT", "", Error::kParseError},
      {"service:x.tamro", "(a<=1*)", "DEFAULT", "", Error::kParseError},
      {"service:x.tamro", "", "", "", Error::kScopeNotSupported},
      {"service:x.tamro", "", ",", "", Error::kScopeNotSupported},
      {"service:x.tamro", "", "other", "", Error::kScopeNotSupported},
      {"service:x.tamro", "", "DEFAULT", "key", Error::kAuthenticationUnknown},
      {"service:x.tamro", "(a=1)", "TAMRO", "", Error::kLanguageNotSupported},
  };
  for (const ErrorCase& row : cases) {
    SrvRqst request = MakeSrvRqst(row.type, row.predicate, row.scopes);
    request.spi = row.spi;
    EXPECT_EQ(daemon.Ask(request), Failed(row.error))
        << row.type << ' ' << row.predicate << ' ' << row.scopes;
    EXPECT_EQ(daemon.Ask(request, kGroupMember), std::nullopt);
    Message multicast = MakeMessage(request);
    multicast.header.request_multicast = true;
    EXPECT_EQ(daemon.Ask(multicast, kNeighbour), std::nullopt);
  }
}

TEST_F(ServiceRequestsTest, ADialectIsServedByItsLanguage) {
  EXPECT_EQ(daemon.Ask(MakeMessage(MakeSrvRqst("service:x.tamro", "(a=1)", "TAMRO"), "de-AT")),
            ReplyOf(SrvRply{Error::kOk, {{3600, "service:x.tamro:http://2", {}}}}, "de-AT"));
}

TEST_F(ServiceRequestsTest, TheLifetimeIsWhatIsLeft) {
  daemon.now += Seconds(3599);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x.tamro")),
            ReplyOf(SrvRply{Error::kOk, {{1, "service:x.tamro:http://1", {}}}}));
}

}  // namespace
}  // namespace slp
