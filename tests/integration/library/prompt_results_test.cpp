// What the library returns as a whole it returns as soon as the reply that completes it is there.
#include "integration/library/library_fixture.h"
#include "support/prompt_result.h"

namespace kelsd::integration {
namespace {

using std::chrono::steady_clock;

class PromptResults : public LibraryTest {
 protected:
  void SetUp() override { ServeNothing(); }

  slp::support::PeerOptions InPlaceOfTheDaemon() const {
    slp::support::PeerOptions options;
    options.port = daemon().port();
    return options;
  }

  void ExpectAttributes(const std::string& address) const {
    const slp::AttrRply answer{
        .error = slp::Error::kOk, .attributes = "(x-version=4.2)", .authentication = {}};
    slp::support::ExpectResultsWithoutDelay(answer, InPlaceOfTheDaemon(), [&] {
      SKelServiceAttributeSearchResult found;
      EXPECT_THAT(CKelSLPClient::FindAttributes(found, "service:zdrest.tamro:http://127.0.0.1:8080",
                                                std::vector<std::string>{"x-version"}, {"tamro"}, address),
                  Succeeded());
      EXPECT_EQ(found.AttributeString, "(x-version=4.2)");
      return steady_clock::now();
    });
  }
};

// The first agent that answers is the only one whose attributes count.
TEST_F(PromptResults, AttributesByMulticast) {
  ExpectAttributes("");
}

TEST_F(PromptResults, AttributesOfOneAgent) {
  ExpectAttributes("127.0.0.1");
}

TEST_F(PromptResults, ServicesOfOneAgent) {
  const std::string url = "service:zdrest.tamro:http://127.0.0.1:8080";
  slp::support::ExpectResultsWithoutDelay(slp::support::UrlReply({url}), InPlaceOfTheDaemon(), [&] {
    std::vector<SKelServiceSearchResult> found;
    EXPECT_THAT(CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", "127.0.0.1"),
                Succeeded());
    EXPECT_EQ(Urls(found), std::vector<std::string>{url});
    return steady_clock::now();
  });
}

}  // namespace
}  // namespace kelsd::integration
