// SLPOpen, SLPClose, SLPAssociateIP, SLPAssociateIFList, SLPFindScopes, and whose turn a handle is.
#include <thread>

#include "api_fixture.h"

namespace slp::support {
namespace {

SLPBoolean SLPCALLBACK IgnoreService(SLPHandle, const char*, unsigned short, SLPError, void*) {
  return SLP_TRUE;
}

SLPBoolean SLPCALLBACK IgnoreList(SLPHandle, const char*, SLPError, void*) {
  return SLP_TRUE;
}

void SLPCALLBACK IgnoreReport(SLPHandle, SLPError, void*) {}

/// What every call that takes a handle returns.
std::vector<SLPError> CallAll(SLPHandle handle) {
  char* scopes = nullptr;
  const char* url = "service:x://h";
  std::vector<SLPError> results = {
      SLPAssociateIP(handle, "127.0.0.1"),
      SLPAssociateIFList(handle, "127.0.0.1"),
      SLPReg(handle, url, 60, nullptr, "", SLP_TRUE, IgnoreReport, nullptr),
      SLPDereg(handle, url, IgnoreReport, nullptr),
      SLPDelAttrs(handle, url, "a", IgnoreReport, nullptr),
      SLPFindSrvTypes(handle, "*", "", IgnoreList, nullptr),
      SLPFindSrvs(handle, "service:x", "", "", IgnoreService, nullptr),
      SLPFindAttrs(handle, url, "", "", IgnoreList, nullptr),
      SLPFindScopes(handle, &scopes),
  };
  SLPFree(scopes);
  return results;
}

class HandleCalls : public ApiTest {};

TEST_F(HandleCalls, OpenChecksItsParameters) {
  SLPHandle handle = &handle;
  EXPECT_EQ(SLPOpen("en", SLP_FALSE, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPOpen("en", SLP_TRUE, &handle), SLP_NOT_IMPLEMENTED);
  EXPECT_EQ(handle, nullptr);
  handle = &handle;
  EXPECT_EQ(SLPOpen("no language", SLP_FALSE, &handle), SLP_PARAMETER_BAD);
  EXPECT_EQ(handle, nullptr);
}

TEST_F(HandleCalls, NullAndForeignAndClosedHandlesAreRefused) {
  const std::vector<SLPError> refused(9, SLP_PARAMETER_BAD);
  int foreign = 0;
  EXPECT_EQ(CallAll(nullptr), refused);
  EXPECT_EQ(CallAll(&foreign), refused);
  SLPHandle closed = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &closed), SLP_OK);
  SLPClose(closed);
  EXPECT_EQ(CallAll(closed), refused);
  SLPClose(closed);
  SLPClose(nullptr);
  SLPClose(&foreign);
}

TEST_F(HandleCalls, AHandleServesOneCallAtATime) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({"service:x://h"}))}};
      },
      AtPort());
  struct Seen {
    std::vector<SLPError> inside;
    std::vector<SLPError> other_thread;
    int calls = 0;
  } seen;
  const auto callback = [](SLPHandle handle, const char*, unsigned short, SLPError, void* cookie) {
    Seen& found = *static_cast<Seen*>(cookie);
    ++found.calls;
    found.inside = CallAll(handle);
    std::thread([&] { found.other_thread = CallAll(handle); }).join();
    return SLP_TRUE;
  };
  EXPECT_EQ(SLPFindSrvs(handle_, "service:x", "", "", callback, &seen), SLP_OK);
  const std::vector<SLPError> in_use(9, SLP_HANDLE_IN_USE);
  EXPECT_EQ(seen.inside, in_use);
  EXPECT_EQ(seen.other_thread, in_use);
  EXPECT_EQ(seen.calls, 2);
  EXPECT_EQ(SLPAssociateIP(handle_, "127.0.0.1"), SLP_OK);
}

TEST_F(HandleCalls, ClosingInACallbackEndsTheCall) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, UrlReply({"service:x://h", "service:x://i"}))}};
      },
      AtPort());
  struct Seen {
    std::vector<SLPError> inside;
    int calls = 0;
  } seen;
  const auto callback = [](SLPHandle handle, const char*, unsigned short, SLPError, void* cookie) {
    Seen& found = *static_cast<Seen*>(cookie);
    ++found.calls;
    SLPClose(handle);
    SLPClose(handle);
    found.inside = CallAll(handle);
    return SLP_TRUE;
  };
  EXPECT_EQ(SLPFindSrvs(handle_, "service:x", "", "", callback, &seen), SLP_OK);
  const std::vector<SLPError> refused(9, SLP_PARAMETER_BAD);
  EXPECT_EQ(seen.calls, 1);
  EXPECT_EQ(seen.inside, refused);
  EXPECT_EQ(CallAll(handle_), refused);
}

TEST_F(HandleCalls, ClosingByAnotherThreadKeepsTheCallFromCallingBack) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [this](const PeerRequest& request) {
        SLPClose(handle_);
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({"service:x://h"}))}};
      },
      AtPort());
  int calls = 0;
  EXPECT_EQ(SLPFindSrvs(
                handle_, "service:x", "", "",
                [](SLPHandle, const char*, unsigned short, SLPError, void* cookie) {
                  ++*static_cast<int*>(cookie);
                  return SLP_TRUE;
                },
                &calls),
            SLP_OK);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(CallAll(handle_), std::vector<SLPError>(9, SLP_PARAMETER_BAD));
}

TEST_F(HandleCalls, AnotherHandleMayBeUsedInACallback) {
  AskOnly("127.0.0.1");
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({"service:x://h"}))}};
      },
      AtPort());
  SLPError inside = SLP_OK;
  EXPECT_EQ(SLPFindSrvs(
                handle_, "service:x", "", "",
                [](SLPHandle, const char*, unsigned short, SLPError, void* cookie) {
                  SLPHandle other = nullptr;
                  SLPOpen(nullptr, SLP_FALSE, &other);
                  SLPAssociateIP(other, "127.0.0.1");
                  *static_cast<SLPError*>(cookie) =
                      SLPFindSrvs(other, "service:x", "", "", IgnoreService, nullptr);
                  SLPClose(other);
                  return SLP_TRUE;
                },
                &inside),
            SLP_OK);
  EXPECT_EQ(inside, SLP_OK);
}

TEST_F(HandleCalls, AnExceptionOfACallbackDoesNotCrossTheApi) {
  AskOnly("127.0.0.1");
  const auto throwing = [](SLPHandle, const char*, unsigned short, SLPError, void*) -> SLPBoolean {
    throw std::bad_alloc();
  };
  EXPECT_EQ(SLPFindSrvs(handle_, "service:x", "", "(", throwing, nullptr), SLP_MEMORY_ALLOC_FAILED);
  EXPECT_EQ(SLPAssociateIP(handle_, "127.0.0.1"), SLP_OK);
}

TEST_F(HandleCalls, AssociateIpTakesAnIpv4Address) {
  for (const char* address : {"", "no address", "1.2.3", "1.2.3.4.5", "::1", "0.0.0.0", "239.255.255.253"}) {
    EXPECT_EQ(SLPAssociateIP(handle_, address), SLP_PARAMETER_BAD) << address;
  }
  EXPECT_EQ(SLPAssociateIP(handle_, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPAssociateIP(handle_, " 127.0.0.1 "), SLP_OK);
}

TEST_F(HandleCalls, AssociateIpTakesAnIpv6AddressWhereItIsInUse) {
  Set("net.slp.useIPv6", "true");
  for (const char* address : {"::", "ff02::116", "[::1]", "::ffff:0.0.0.0", "fe80::1%nosuchinterface"}) {
    EXPECT_EQ(SLPAssociateIP(handle_, address), SLP_PARAMETER_BAD) << address;
  }
  for (const char* address : {"::1", " 2001:db8::1 ", "fe80::1", "::ffff:127.0.0.1", "127.0.0.1"}) {
    EXPECT_EQ(SLPAssociateIP(handle_, address), SLP_OK) << address;
  }
  Set("net.slp.useIPv6", "false");
  EXPECT_EQ(SLPAssociateIP(handle_, "::1"), SLP_PARAMETER_BAD);
}

TEST_F(HandleCalls, AssociateIfListTakesOwnAddresses) {
  for (const char* list : {"", ",", "192.0.2.1", "127.0.0.1,192.0.2.1"}) {
    EXPECT_EQ(SLPAssociateIFList(handle_, list), SLP_PARAMETER_BAD) << list;
  }
  EXPECT_EQ(SLPAssociateIFList(handle_, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPAssociateIFList(handle_, "127.0.0.1,127.0.0.2"), SLP_OK);
}

TEST_F(HandleCalls, WithoutALanguageThePropertyHolds) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvRply{})}};
      },
      AtPort());
  const auto language_of = [&](const char* language, const std::string& locale) {
    Set("net.slp.locale", locale);
    SLPHandle handle = nullptr;
    SLPOpen(language, SLP_FALSE, &handle);
    SLPAssociateIP(handle, "127.0.0.1");
    SLPFindSrvs(handle, "service:x", "", "", IgnoreService, nullptr);
    SLPClose(handle);
    return peer.requests().back().message->header.language;
  };
  EXPECT_EQ(language_of("de", "fr"), "de");
  EXPECT_EQ(language_of("", "fr"), "fr");
  EXPECT_EQ(language_of(nullptr, "fr-CA"), "fr-CA");
  EXPECT_EQ(language_of(nullptr, "no language"), "en");
}

TEST_F(HandleCalls, FindScopesHandsOutTheConfiguredScopes) {
  const auto scopes = [&] {
    char* list = nullptr;
    EXPECT_EQ(SLPFindScopes(handle_, &list), SLP_OK);
    std::string text = list;
    SLPFree(list);
    return text;
  };
  EXPECT_EQ(scopes(), "DEFAULT");
  Set("net.slp.useScopes", "TAMRO, Lab");
  EXPECT_EQ(scopes(), "TAMRO,Lab");
  Set("net.slp.useScopes", ",");
  EXPECT_EQ(scopes(), "DEFAULT");
  EXPECT_EQ(SLPFindScopes(handle_, nullptr), SLP_PARAMETER_BAD);
}

TEST(Handles, TheLastOneDropsTheProperties) {
  SLPHandle first = nullptr;
  SLPHandle second = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &first), SLP_OK);
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &second), SLP_OK);
  SLPSetProperty("net.slp.useScopes", "TAMRO");
  SLPClose(first);
  EXPECT_STREQ(SLPGetProperty("net.slp.useScopes"), "TAMRO");
  SLPClose(second);
  EXPECT_STREQ(SLPGetProperty("net.slp.useScopes"), "DEFAULT");
}

TEST(Handles, TheLastOneDropsThePropertiesAlsoWhenItIsClosedInItsCallback) {
  SLPHandle handle = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  SLPSetProperty("net.slp.useScopes", "TAMRO");
  std::string inside;
  SLPFindSrvs(
      handle, "service:x", "", "(",
      [](SLPHandle closed, const char*, unsigned short, SLPError, void* cookie) {
        SLPClose(closed);
        *static_cast<std::string*>(cookie) = SLPGetProperty("net.slp.useScopes");
        return SLP_TRUE;
      },
      &inside);
  EXPECT_EQ(inside, "TAMRO");
  EXPECT_STREQ(SLPGetProperty("net.slp.useScopes"), "DEFAULT");
}

TEST(Handles, AFailedOpenLeavesNoShareInTheProperties) {
  SLPHandle handle = nullptr;
  EXPECT_EQ(SLPOpen("no language", SLP_FALSE, &handle), SLP_PARAMETER_BAD);
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  SLPSetProperty("net.slp.useScopes", "TAMRO");
  SLPClose(handle);
  EXPECT_STREQ(SLPGetProperty("net.slp.useScopes"), "DEFAULT");
}

}  // namespace
}  // namespace slp::support
