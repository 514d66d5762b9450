#include "integration/directory/directory_fixture.h"

#include <algorithm>
#include <thread>

#include "support/machine_delay.h"
#include "support/run_program/run_program.h"

namespace slp::integration {
namespace {

using std::chrono::steady_clock;

// Nothing tells when another host's agent has been told of a service; a short pause between two looks is all
// there is.
constexpr std::chrono::milliseconds kPause{20};
constexpr std::chrono::seconds kLimit{20};

/// Two quiet rounds of a multicast search with the default timeouts.
constexpr std::chrono::milliseconds kMulticastSearch{1250};

SLPBoolean SLPCALLBACK Collect(SLPHandle, const char* url, unsigned short, SLPError error, void* cookie) {
  if (error == SLP_OK) {
    static_cast<std::vector<std::string>*>(cookie)->emplace_back(url);
  }
  return SLP_TRUE;
}

void SLPCALLBACK Ignore(SLPHandle, SLPError, void*) {}

std::vector<std::string> FindBy(SLPHandle handle, const std::string& type, const std::string& scopes) {
  std::vector<std::string> urls;
  static_cast<void>(SLPFindSrvs(handle, type.c_str(), scopes.c_str(), "", Collect, &urls));
  std::sort(urls.begin(), urls.end());
  return urls;
}

}  // namespace

DirectoryTest::DirectoryTest() {
  SLPSetProperty("net.slp.port", std::to_string(port_).c_str());
  SLPSetProperty("net.slp.interfaces", "127.0.0.2");
  SLPSetProperty("net.slp.datagramTimeouts", "200,200,200");
  EXPECT_EQ(SLPOpen("en", SLP_FALSE, &handle_), SLP_OK);
}

DirectoryTest::~DirectoryTest() {
  SLPClose(handle_);
}

DirectoryTest::Daemon DirectoryTest::StartServiceAgent(const std::string& address,
                                                       const std::string& registrations,
                                                       const std::string& configuration) const {
  return Start(address, registrations, configuration);
}

DirectoryTest::Daemon DirectoryTest::StartDirectoryAgent(const std::string& address,
                                                         const std::string& configuration) const {
  return Start(address, {}, "net.slp.isDA = true\n" + configuration);
}

DirectoryTest::Daemon DirectoryTest::Start(const std::string& address, const std::string& registrations,
                                           const std::string& configuration) const {
  support::SlpdOptions options;
  options.address = address;
  options.port = port_;
  options.registrations = registrations;
  options.configuration =
      "net.slp.randomWaitBound = 100\nnet.slp.datagramTimeouts = 200,200,200\n" + configuration;
  auto daemon = std::make_unique<support::SlpdProcess>(options);
  EXPECT_TRUE(daemon->Running()) << daemon->Log();
  return daemon;
}

std::string DirectoryTest::Service(const std::string& url) {
  return url + ",en,65535\n\n";
}

std::vector<std::string> DirectoryTest::Find(const std::string& type, const std::string& scopes) const {
  return FindBy(handle_, type, scopes);
}

std::vector<std::string> DirectoryTest::FindAt(const std::string& address, const std::string& type) const {
  SLPHandle handle = nullptr;
  EXPECT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  EXPECT_EQ(SLPAssociateIP(handle, address.c_str()), SLP_OK);
  const auto urls = FindBy(handle, type, "");
  SLPClose(handle);
  return urls;
}

DirectoryTest::Milliseconds DirectoryTest::TimeOfProgram(const support::SlpdProcess& daemon,
                                                         const std::string& type, const std::string& url,
                                                         const std::string& scope) {
  return TimeOf([&] {
    const auto run = kelsd::support::RunProgram(
        {KELSD_TOOL_PROGRAM, "find", type, "--scope", scope, "--config", daemon.configuration_file()});
    EXPECT_THAT(run.output, testing::HasSubstr(url)) << run.error;
  });
}

// A daemon that the machine kept from answering in time is not asked again by this process for a minute.
// Programs that start anew ask it.
void DirectoryTest::ExpectAnsweredByAgents(const support::SlpdProcess& daemon, const std::string& scope,
                                           const std::vector<std::string>& urls) const {
  kelsd::support::MachineDelay delay;
  Milliseconds took = TimeOf([&] { EXPECT_EQ(Find("service:x", scope), urls); });
  for (int left = 5; left > 0 && took >= kMulticastSearch; --left) {
    took = TimeOfProgram(daemon, "service:x", urls.back(), scope);
  }
  EXPECT_LT(took, kMulticastSearch + delay.Allowance());
}

SLPError DirectoryTest::Register(const std::string& url) const {
  return SLPReg(handle_, url.c_str(), 600, nullptr, "(a=1)", SLP_TRUE, Ignore, nullptr);
}

SLPError DirectoryTest::Deregister(const std::string& url) const {
  return SLPDereg(handle_, url.c_str(), Ignore, nullptr);
}

bool DirectoryTest::ComesToHave(const std::string& address, const std::string& type,
                                const std::vector<std::string>& urls) const {
  const auto end = steady_clock::now() + kLimit;
  while (FindAt(address, type) != urls) {
    if (steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

std::chrono::milliseconds DirectoryTest::TimeOf(const std::function<void()>& action) {
  const auto start = steady_clock::now();
  action();
  return std::chrono::duration_cast<Milliseconds>(steady_clock::now() - start);
}

}  // namespace slp::integration
