// Every kind of search reports a result when its reply is there, although there is time left to wait for
// others.
#include "api_fixture.h"
#include "support/prompt_result.h"

namespace slp::support {
namespace {

using std::chrono::steady_clock;

class PromptResults : public ApiTest {
 protected:
  PromptResults() {
    Set("net.slp.multicastTimeouts", "3000");
    Set("net.slp.multicastMaximumWait", "3000");
    Set("net.slp.unicastTimeouts", "3000");
    Set("net.slp.unicastMaximumWait", "3000");
  }

  void ExpectServices() {
    const auto search = [&] {
      steady_clock::time_point reported;
      EXPECT_EQ(SLPFindSrvs(handle_, "service:prompt", "", "", OnService, &reported), SLP_OK);
      return reported;
    };
    ExpectResultsWithoutDelay(UrlReply({"service:prompt://1"}), AtPort(), search);
  }

  void ExpectAttributes() {
    const auto search = [&] {
      steady_clock::time_point reported;
      EXPECT_EQ(SLPFindAttrs(handle_, "service:prompt://1", "", "", OnList, &reported), SLP_OK);
      return reported;
    };
    ExpectResultsWithoutDelay(AttrRply{.error = Error::kOk, .attributes = "(a=1)", .authentication = {}},
                              AtPort(), search);
  }

 private:
  // Only the first call counts, and asks for no more.
  static SLPBoolean SLPCALLBACK OnService(SLPHandle, const char* /*url*/, unsigned short /*lifetime*/,
                                          SLPError error, void* cookie) {
    EXPECT_EQ(error, SLP_OK);
    *static_cast<steady_clock::time_point*>(cookie) = steady_clock::now();
    return SLP_FALSE;
  }

  static SLPBoolean SLPCALLBACK OnList(SLPHandle handle, const char* /*list*/, SLPError error, void* cookie) {
    return OnService(handle, nullptr, 0, error, cookie);
  }
};

TEST_F(PromptResults, ServicesByMulticast) {
  ExpectServices();
}

TEST_F(PromptResults, ServicesOfOneAgent) {
  AskOnly("127.0.0.1");
  ExpectServices();
}

TEST_F(PromptResults, AttributesByMulticast) {
  ExpectAttributes();
}

TEST_F(PromptResults, AttributesOfOneAgent) {
  AskOnly("127.0.0.1");
  ExpectAttributes();
}

}  // namespace
}  // namespace slp::support
