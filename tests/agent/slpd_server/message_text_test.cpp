#include "slpd/server/message_text.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

struct Row {
  Body body;
  std::string text;
};

TEST(MessageText, EveryKindShowsItsFields) {
  const Row rows[] = {
      {SrvRqst{"10.0.0.1", "service:x", "DEFAULT", "(a=1)", "spi"},
       "SrvRqst xid=7 lang=en type=\"service:x\" scopes=\"DEFAULT\" predicate=\"(a=1)\" spi=\"spi\" "
       "responders=\"10.0.0.1\""},
      {SrvRqst{{}, "service:x", {}, {}, {}}, "SrvRqst xid=7 lang=en type=\"service:x\" scopes=\"\""},
      {SrvRply{Error::kOk, {{5, "service:x://a", {}}, {6, "service:x://b", {}}}},
       "SrvRply xid=7 lang=en error=0 urls=2 url=\"service:x://a\" lifetime=5 url=\"service:x://b\" "
       "lifetime=6"},
      {SrvReg{{5, "service:x://a", {}}, "service:x", "DEFAULT", "(a=1)", {}},
       "SrvReg xid=7 lang=en url=\"service:x://a\" lifetime=5 type=\"service:x\" scopes=\"DEFAULT\" "
       "attributes=\"(a=1)\""},
      {SrvDereg{"DEFAULT", {0, "service:x://a", {}}, "a*"},
       "SrvDereg xid=7 lang=en url=\"service:x://a\" scopes=\"DEFAULT\" tags=\"a*\""},
      {SrvAck{Error::kScopeNotSupported}, "SrvAck xid=7 lang=en error=4"},
      {AttrRqst{{}, "service:x", "DEFAULT", "a", {}},
       "AttrRqst xid=7 lang=en url=\"service:x\" scopes=\"DEFAULT\" tags=\"a\""},
      {AttrRply{Error::kOk, "(a=1)", {}}, "AttrRply xid=7 lang=en error=0 attributes=\"(a=1)\""},
      {DaAdvert{Error::kOk, 9, "service:directory-agent://10.0.0.1", "DEFAULT", {}, {}, {}},
       "DAAdvert xid=7 lang=en error=0 boot=9 url=\"service:directory-agent://10.0.0.1\" scopes=\"DEFAULT\""},
      {SrvTypeRqst{{}, std::nullopt, "DEFAULT"}, "SrvTypeRqst xid=7 lang=en scopes=\"DEFAULT\""},
      {SrvTypeRqst{{}, "", "DEFAULT"}, "SrvTypeRqst xid=7 lang=en authority=\"\" scopes=\"DEFAULT\""},
      {SrvTypeRply{Error::kOk, "service:x"}, "SrvTypeRply xid=7 lang=en error=0 types=\"service:x\""},
      {SaAdvert{"service:service-agent://10.0.0.1", "DEFAULT", "(a=1)", {}},
       "SAAdvert xid=7 lang=en url=\"service:service-agent://10.0.0.1\" scopes=\"DEFAULT\" "
       "attributes=\"(a=1)\""},
  };
  for (const Row& row : rows) {
    Message message;
    message.header.xid = 7;
    message.body = row.body;
    EXPECT_EQ(Describe(message), row.text);
  }
}

TEST(MessageText, FlagsAndExtensionsStandInTheLine) {
  Message message;
  message.header = {true, true, true, 1, "de", {{kExtensionProcessId, {}}}};
  message.body = SrvAck{};
  EXPECT_EQ(Describe(message), "SrvAck xid=1 lang=de overflow fresh multicast error=0 extension=16385");
}

TEST(MessageText, LongTextsAreCut) {
  Message message;
  message.body = SrvTypeRply{Error::kOk, std::string(401, 'x')};
  EXPECT_EQ(Describe(message),
            "SrvTypeRply xid=0 lang=en error=0 types=\"" + std::string(400, 'x') + "...\"");
}

TEST(MessageText, RegistrationsAndOrigins) {
  RegistrationView registration;
  registration.url = "service:x://a";
  registration.service_type = "service:x";
  registration.language = "en";
  registration.scopes = "DEFAULT";
  registration.attributes = "(a=1)";
  registration.lifetime = 9;
  registration.process_id = 4711;
  EXPECT_EQ(Describe(registration),
            "service:x://a type=\"service:x\" lang=en scopes=\"DEFAULT\" lifetime=9 attributes=\"(a=1)\" "
            "process=4711");

  RequestOrigin origin;
  origin.address = "10.0.0.1";
  EXPECT_EQ(Describe(origin), "10.0.0.1 (UDP)");
  origin.transport = Transport::kUdpMulticast;
  EXPECT_EQ(Describe(origin), "10.0.0.1 (multicast)");
  origin.transport = Transport::kTcp;
  EXPECT_EQ(Describe(origin), "10.0.0.1 (TCP)");
}

}  // namespace
}  // namespace slp
