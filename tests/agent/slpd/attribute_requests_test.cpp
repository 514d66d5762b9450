// Attribute and service type requests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

constexpr const char* kUrl = "service:x.tamro:http://1";

class AttributeRequestsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    daemon.Register(MakeSrvReg(kUrl, "service:x.tamro:http", "(Loc=  A  b ),(x-version=),(n=1\\2C2),Key"));
    daemon.Register(MakeSrvReg("service:x.tamro:http://2", "service:x.tamro:http", "(loc=a B,c)", "tamro"));
    daemon.Register(MakeSrvReg("http://3", "http", "(a=eins)"), true, "de");
  }

  DaemonLogic daemon;
};

struct AttributeCase {
  const char* url;
  const char* tags;
  const char* scopes;
  const char* attributes;
};

TEST_F(AttributeRequestsTest, AnswersByUrlAndByType) {
  const AttributeCase cases[] = {
      {kUrl, "", "DEFAULT", "(Loc=  A  b ),(x-version=),(n=1\\2C2),Key"},
      {kUrl, "key,L*", "DEFAULT", "(Loc=  A  b ),Key"},
      {kUrl, ",", "DEFAULT", "(Loc=  A  b ),(x-version=),(n=1\\2C2),Key"},
      {kUrl, ",n", "DEFAULT", "(n=1\\2C2)"},
      {kUrl, "n,,key", "DEFAULT", "(n=1\\2C2),Key"},
      {kUrl, "x-version", "DEFAULT", "(x-version=)"},
      {kUrl, "other", "DEFAULT", ""},
      {kUrl, "", "TAMRO", ""},
      {"service:x.tamro:http://9", "", "DEFAULT", ""},
      {"service:x.tamro:http", "loc", "DEFAULT", "(Loc=  A  b )"},
      {"service:x.tamro", "key", "DEFAULT,TAMRO", "Key"},
      {"service:y", "", "DEFAULT", ""},
  };
  for (const AttributeCase& row : cases) {
    const AttrRqst request = MakeAttrRqst(row.url, row.tags, row.scopes);
    const std::optional<Message> reply = ReplyOf(AttrRply{Error::kOk, row.attributes, {}});
    EXPECT_EQ(daemon.Ask(request), reply) << row.url << ' ' << row.tags;
    EXPECT_EQ(daemon.Ask(request, kGroupMember), row.attributes[0] == '\0' ? std::nullopt : reply)
        << row.url << ' ' << row.tags;
  }
}

TEST_F(AttributeRequestsTest, ATypesValuesComeOnce) {
  const std::optional<Message> reply = daemon.Ask(MakeAttrRqst("service:x.tamro", "loc", "DEFAULT,TAMRO"));
  ASSERT_TRUE(reply);
  const std::string attributes = std::get<AttrRply>(reply->body).attributes;
  EXPECT_TRUE(attributes == "(Loc=  A  b ,c)" || attributes == "(loc=a B,c)") << attributes;
}

struct ErrorCase {
  const char* url;
  const char* tags;
  const char* scopes;
  const char* spi;
  Error error;
};

TEST_F(AttributeRequestsTest, ErrorsGoToUnicastSendersOnly) {
  const ErrorCase cases[] = {
      {"", "", "DEFAULT", "", Error::kParseError},
      {"service:", "", "DEFAULT", "", Error::kParseError},
      {"not a url", "", "DEFAULT", "", Error::kParseError},
      {"service:x://h:99999", "", "DEFAULT", "", Error::kParseError},
      {kUrl, "a(b", "DEFAULT", "", Error::kParseError},
      {kUrl, "a_b", "DEFAULT", "", Error::kParseError},
      {kUrl, "\\zz", "DEFAULT", "", Error::kParseError},
      {kUrl, "", "", "", Error::kScopeNotSupported},
      {kUrl, "", "other", "", Error::kScopeNotSupported},
      {kUrl, "", "DEFAULT", "key", Error::kAuthenticationUnknown},
      {kUrl, "n", "DEFAULT", "key", Error::kAuthenticationFailed},
      {"service:x.tamro", "", "DEFAULT", "key", Error::kAuthenticationFailed},
      {"http://3", "", "DEFAULT", "", Error::kLanguageNotSupported},
      {"http", "", "DEFAULT", "", Error::kLanguageNotSupported},
  };
  for (const ErrorCase& row : cases) {
    AttrRqst request = MakeAttrRqst(row.url, row.tags, row.scopes);
    request.spi = row.spi;
    EXPECT_EQ(daemon.Ask(request), ReplyOf(AttrRply{row.error, "", {}})) << row.url << ' ' << row.tags;
    EXPECT_EQ(daemon.Ask(request, kGroupMember), std::nullopt);
  }
}

TEST_F(AttributeRequestsTest, AReplyThatDoesNotFitIsNeverCutInTheMiddle) {
  const std::string attributes = "(a=" + std::string(2000, 'v') + ")";
  daemon.Register(MakeSrvReg(kUrl, "service:x.tamro:http", attributes));
  Message overflow = MakeMessage(AttrRply{});
  overflow.header.overflow = true;
  EXPECT_EQ(daemon.Ask(MakeAttrRqst(kUrl)), overflow);
  EXPECT_EQ(daemon.Ask(MakeAttrRqst(kUrl), kStreamPeer), ReplyOf(AttrRply{Error::kOk, attributes, {}}));
}

TEST_F(AttributeRequestsTest, MoreThanATextCanHoldIsWholeAttributesWithTheOverflowFlag) {
  for (int i = 0; i < 3; ++i) {
    const std::string tag = "a" + std::to_string(i);
    daemon.Register(
        MakeSrvReg("service:big://" + tag, "service:big", "(" + tag + "=" + std::string(30'000, 'v') + ")"));
  }
  const std::optional<Message> reply = daemon.Ask(MakeAttrRqst("service:big"), kStreamPeer);
  ASSERT_TRUE(reply);
  EXPECT_TRUE(reply->header.overflow);
  const Result<AttributeList> list = AttributeList::Parse(std::get<AttrRply>(reply->body).attributes);
  ASSERT_TRUE(list);
  EXPECT_EQ(list->items().size(), 2U);
}

struct TypeCase {
  std::optional<std::string> naming_authority;
  const char* scopes;
  const char* types;
};

TEST_F(AttributeRequestsTest, ServiceTypesByNamingAuthority) {
  const TypeCase cases[] = {
      {std::nullopt, "DEFAULT", "http,service:x.tamro:http"}, {"", "DEFAULT", "http"},
      {"TAMRO", "DEFAULT", "service:x.tamro:http"},           {"other", "DEFAULT", ""},
      {std::nullopt, "TAMRO", "service:x.tamro:http"},
  };
  for (const TypeCase& row : cases) {
    const SrvTypeRqst request{{}, row.naming_authority, row.scopes};
    const std::optional<Message> reply = ReplyOf(SrvTypeRply{Error::kOk, row.types});
    EXPECT_EQ(daemon.Ask(request), reply) << row.types;
    EXPECT_EQ(daemon.Ask(request, kGroupMember), row.types[0] == '\0' ? std::nullopt : reply) << row.types;
  }
  for (const char* scopes : {"", "other"}) {
    const SrvTypeRqst request{{}, std::nullopt, scopes};
    EXPECT_EQ(daemon.Ask(request), ReplyOf(SrvTypeRply{Error::kScopeNotSupported, ""}));
    EXPECT_EQ(daemon.Ask(request, kGroupMember), std::nullopt);
  }
}

TEST_F(AttributeRequestsTest, MoreTypesThanATextCanHoldAreCut) {
  for (int i = 0; i < 3; ++i) {
    const std::string type =
        "service:" + std::string(1, static_cast<char>('t' + i)) + std::string(30'000, 'y');
    ASSERT_EQ(daemon.Register(MakeSrvReg(type + "://h", type)), Error::kOk);
  }
  const std::optional<Message> reply = daemon.Ask(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}, kStreamPeer);
  ASSERT_TRUE(reply);
  EXPECT_TRUE(reply->header.overflow);
  EXPECT_EQ(std::get<SrvTypeRply>(reply->body).types.size(), std::string("http,").size() + std::size_t{2} * 30'009 + 1);
}

}  // namespace
}  // namespace slp
