// What the daemon makes of senders and addresses of IPv6 (RFC 3111).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

const RequestOrigin kIpv6Neighbour{"fe80::7%eth0", false, true, Transport::kUdpUnicast, "fe80::1%eth0"};

AgentSettings Ipv6Settings() {
  AgentSettings settings = TestSettings();
  settings.own_addresses.insert(settings.own_addresses.end(), {"fe80::1", "::1"});
  return settings;
}

class Ipv6SendersTest : public testing::Test {
 protected:
  Ipv6SendersTest() { daemon_.handler.SetSettings(Ipv6Settings()); }

  void BeDirectoryAgent() {
    AgentSettings settings = Ipv6Settings();
    settings.directory_agent = true;
    settings.boot_timestamp = 77;
    daemon_.handler.SetSettings(settings);
  }

  Error Register(const std::string& url, const RequestOrigin& origin) {
    Message message = MakeMessage(MakeSrvReg(url, "service:x"));
    message.header.fresh = true;
    const std::optional<Message> reply = daemon_.Ask(message, origin);
    return reply ? std::get<SrvAck>(reply->body).error : Error::kInternalError;
  }

  DaemonLogic daemon_;
};

TEST_F(Ipv6SendersTest, AdvertisementsNameTheAddressInBracketsAndWithoutZone) {
  EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:service-agent"), kIpv6Neighbour),
            ReplyOf(SaAdvert{"service:service-agent://[fe80::1]", "DEFAULT,TAMRO", "", {}}));
  BeDirectoryAgent();
  EXPECT_EQ(
      daemon_.Ask(MakeSrvRqst("service:directory-agent"), kIpv6Neighbour),
      ReplyOf(DaAdvert{Error::kOk, 77, "service:directory-agent://[fe80::1]", "DEFAULT,TAMRO", "", "", {}}));
}

TEST_F(Ipv6SendersTest, WhoMayStandOnAnotherLinkIsToldOfNoAddressOfThisOne) {
  for (const char* url :
       {"service:x://[fe80::9]:80", "service:x://[FEBF:0::1]/path", "service:x://[fec0::1]",
        "service:x://[2001:db8::1]", "service:x://169.254.0.1", "service:x://fe80.example"}) {
    ASSERT_EQ(Register(url, kOwnHost), Error::kOk) << url;
  }
  const auto found = [this](const RequestOrigin& origin) {
    std::vector<std::string> urls;
    const std::optional<Message> reply = daemon_.Ask(MakeSrvRqst("service:x"), origin);
    for (const UrlEntry& entry : std::get<SrvRply>(reply->body).urls) {
      urls.push_back(entry.url);
    }
    return urls;
  };
  RequestOrigin beyond = kIpv6Neighbour;
  beyond.address = "2001:db8::7";
  beyond.beyond_link = true;
  EXPECT_THAT(found(kIpv6Neighbour), testing::SizeIs(6));
  EXPECT_THAT(found(beyond),
              testing::UnorderedElementsAre("service:x://[fec0::1]", "service:x://[2001:db8::1]",
                                            "service:x://169.254.0.1", "service:x://fe80.example"));
}

struct SourceRow {
  const char* url;
  Error error;
};

TEST_F(Ipv6SendersTest, ADirectoryAgentTakesUrlsWithTheSendersOwnAddress) {
  BeDirectoryAgent();
  const SourceRow rows[] = {
      {"service:x://[fe80::7]:80", Error::kOk},
      {"service:x://[FE80:0::7]", Error::kOk},
      {"service:x://host", Error::kOk},
      {"service:x://[fe80::8]:80", Error::kInvalidRegistration},
      {"service:x://[::1]", Error::kInvalidRegistration},
      {"service:x://10.0.0.7", Error::kInvalidRegistration},
  };
  for (const SourceRow& row : rows) {
    EXPECT_EQ(Register(row.url, kIpv6Neighbour), row.error) << row.url;
  }
  EXPECT_EQ(Register("service:x://[fe80::7]", kNeighbour), Error::kInvalidRegistration);
}

TEST_F(Ipv6SendersTest, TheOwnHostsProgramsRegisterFromItsAddresses) {
  for (const char* address : {"::1", "fe80::1%eth0"}) {
    const RequestOrigin origin{address, true, true, Transport::kUdpUnicast, ""};
    const std::string url = std::string("service:x://h/") + address[0];
    ASSERT_EQ(Register(url, origin), Error::kOk) << address;
    const auto registered = daemon_.registry.Find(url, "en");
    ASSERT_TRUE(registered) << address;
    EXPECT_EQ(registered->source, RegistrationSource::kMessage) << address;
  }
}

struct ResponderRow {
  const char* list;
  bool own_host;
  bool answered;
};

TEST_F(Ipv6SendersTest, APreviousResponderIsSilent) {
  ASSERT_EQ(daemon_.Register(MakeSrvReg("service:x://h", "service:x")), Error::kOk);
  const ResponderRow rows[] = {
      {"", false, true},    {"fe80::1", false, false}, {"fe80::2", false, true},
      {"::1", false, true}, {"::1", true, false},      {"10.0.0.9,fe80::1", false, false},
  };
  for (const ResponderRow& row : rows) {
    SrvRqst request = MakeSrvRqst("service:x");
    request.previous_responders = row.list;
    RequestOrigin origin = kIpv6Neighbour;
    origin.own_host = row.own_host;
    EXPECT_EQ(daemon_.Ask(request, origin).has_value(), row.answered) << row.list << row.own_host;
  }
}

}  // namespace
}  // namespace slp
