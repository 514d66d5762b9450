// Attribute and service type requests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"
#include "slpd/requests/request_lists.h"

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
  constexpr std::size_t kTypeLength = 250;
  for (int i = 0; i < 300; ++i) {
    std::string type = "service:t" + std::to_string(100 + i);
    type.resize(kTypeLength, 'y');
    ASSERT_EQ(daemon.Register(MakeSrvReg(type + "://h", type)), Error::kOk);
  }
  const std::optional<Message> reply = daemon.Ask(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}, kStreamPeer);
  ASSERT_TRUE(reply);
  EXPECT_TRUE(reply->header.overflow);
  EXPECT_EQ(std::get<SrvTypeRply>(reply->body).types.size(),
            std::string("http,").size() + 261 * (kTypeLength + 1) - 1);
}

TEST(AttributeTagsTest, WildcardsAreBounded) {
  const auto tags = [](std::ptrdiff_t wildcards) {
    std::string list = "plain";
    for (std::ptrdiff_t i = 0; i < wildcards; ++i) {
      list += ",t" + std::to_string(i) + '*';
    }
    return list;
  };
  DaemonLogic daemon;
  ASSERT_EQ(daemon.Register(MakeSrvReg("service:x://1", "service:x", "(t255x=1),(b=2)")), Error::kOk);
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x", tags(kMaximumWildcardTags))),
            ReplyOf(AttrRply{Error::kOk, "(t255x=1)", {}}));
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x", tags(kMaximumWildcardTags + 1))),
            ReplyOf(AttrRply{Error::kParseError, "", {}}));
  EXPECT_EQ(
      daemon.Ask(SrvDereg{"DEFAULT", {0, "service:x://1", {}}, tags(kMaximumWildcardTags + 1)}, kOwnHost),
      ReplyOf(SrvAck{Error::kParseError}));
}

}  // namespace
}  // namespace slp
