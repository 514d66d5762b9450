// Several handles on several threads at once, for the thread sanitizer more than for their results.
#include <algorithm>
#include <thread>

#include "api_fixture.h"

namespace slp::support {
namespace {

// Nobody waits for the end of a round unless an answer is late, as on a busy machine that runs them all.
class Threads : public ApiTest {
 protected:
  Threads() {
    Set("net.slp.multicastTimeouts", "1000,1000,1000");
    Set("net.slp.multicastMaximumWait", "3000");
  }
};

TEST_F(Threads, EachWithItsOwnHandle) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        const bool registration = request.message && request.message->function() == FunctionId::kSrvReg;
        return std::vector<PeerReply>{
            {.bytes =
                 EncodedReplyTo(request, registration ? Body(SrvAck{}) : Body(UrlReply({"service:x://h"})))}};
      },
      AtPort());
  std::vector<int> found(6);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < found.size(); ++i) {
    threads.emplace_back([&found, i] {
      for (int round = 0; round < 5; ++round) {
        SLPHandle handle = nullptr;
        if (SLPOpen("en", SLP_FALSE, &handle) != SLP_OK) {
          return;
        }
        SLPSetProperty("net.slp.useScopes", i % 2 == 0 ? "TAMRO" : "DEFAULT");
        if (i % 3 == 0) {
          SLPAssociateIP(handle, "127.0.0.1");
        }
        SLPFindSrvs(
            handle, "service:x", "", "",
            [](SLPHandle, const char*, unsigned short, SLPError error, void* cookie) {
              *static_cast<int*>(cookie) += error == SLP_OK ? 1 : 0;
              return SLP_FALSE;
            },
            &found[i]);
        SLPReg(
            handle, "service:x://h", 60, nullptr, "", SLP_TRUE, [](SLPHandle, SLPError, void*) {}, nullptr);
        SLPClose(handle);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(found, std::vector<int>(6, 5));
}

// The one has its answer when the others have returned.
TEST_F(Threads, OneHandleServesOneOfThem) {
  AskOnly("127.0.0.1");
  Set("net.slp.unicastTimeouts", "30000");
  Set("net.slp.unicastMaximumWait", "30000");
  std::atomic<int> returned = 0;
  SlpPeer peer(
      [&](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, SrvRply{}), .when = [&] { return returned == 3; }}};
      },
      AtPort());
  std::vector<SLPError> results(4);
  std::vector<std::thread> threads;
  for (SLPError& result : results) {
    threads.emplace_back([this, &result, &returned] {
      result = SLPFindSrvs(
          handle_, "service:x", "", "",
          [](SLPHandle, const char*, unsigned short, SLPError, void*) { return SLP_TRUE; }, nullptr);
      ++returned;
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::sort(results.begin(), results.end());
  EXPECT_EQ(results,
            (std::vector<SLPError>{SLP_HANDLE_IN_USE, SLP_HANDLE_IN_USE, SLP_HANDLE_IN_USE, SLP_OK}));
}

}  // namespace
}  // namespace slp::support
