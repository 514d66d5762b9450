#include <csignal>

#include "integration/directory/directory_fixture.h"
#include "support/machine_delay.h"

namespace slp::integration {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDirectory = "127.0.0.3";
constexpr const char* kOther = "127.0.0.4";
constexpr const char* kOwn = "127.0.0.2";
constexpr const char* kNeighbour = "127.0.0.5";

// Five seconds since its last answer, the questions after them, and a busy machine.
constexpr std::chrono::milliseconds kUntilFoundOut{30'000};

TEST_F(DirectoryTest, ADirectoryAgentKnowsTheServicesOfAllHostsAndAnswersForThem) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  const Daemon neighbour = StartServiceAgent(kNeighbour, Service("service:x://neighbour"));
  const std::vector<std::string> all{"service:x://neighbour", "service:x://own"};
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", all)) << own->Log() << neighbour->Log();
  EXPECT_EQ(Register("service:x://program"), SLP_OK);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x",
                          {"service:x://neighbour", "service:x://own", "service:x://program"}));
  EXPECT_EQ(Deregister("service:x://program"), SLP_OK);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", all));
  ExpectAnsweredByAgents(*own, "DEFAULT", all);
}

TEST_F(DirectoryTest, OneThatComesLaterIsNoticed) {
  const Daemon own =
      StartServiceAgent(kOwn, Service("service:x://own"), "net.slp.activeDADetection = false\n");
  EXPECT_THAT(Find("service:x"), ElementsAre("service:x://own"));
  const Daemon directory = StartDirectoryAgent(kDirectory);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
}

TEST_F(DirectoryTest, AConfiguredOneIsUsedWithoutSearchOrListening) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own =
      StartServiceAgent(kOwn, Service("service:x://own"),
                        "net.slp.activeDADetection = false\nnet.slp.passiveDADetection = false\n"
                        "net.slp.DAAddresses = 127.0.0.3\n");
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
}

TEST_F(DirectoryTest, OneThatIsConfiguredByNameIsUsed) {
  const Daemon directory = StartDirectoryAgent("127.0.0.1");
  const Daemon own =
      StartServiceAgent(kOwn, Service("service:x://own"),
                        "net.slp.activeDADetection = false\nnet.slp.passiveDADetection = false\n"
                        "net.slp.DAAddresses = localhost,no-such-host.invalid\n");
  EXPECT_TRUE(ComesToHave("127.0.0.1", "service:x", {"service:x://own"})) << own->Log();
  EXPECT_TRUE(own->WaitForLog("net.slp.DAAddresses names no-such-host.invalid, which is not found: "))
      << own->Log();
  EXPECT_EQ(own->Stop(), 0);
  EXPECT_TRUE(ComesToHave("127.0.0.1", "service:x", {}));
}

TEST_F(DirectoryTest, ItsRefreshIntervalIsKnown) {
  const Daemon directory =
      StartDirectoryAgent(kDirectory, "net.slp.DAAttributes = (min-refresh-interval=600)\n");
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
}

TEST_F(DirectoryTest, AfterAKillAndARestartEverythingIsThereAgain) {
  Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"}));
  directory.reset();
  EXPECT_THAT(Find("service:x"), ElementsAre("service:x://own")) << "by multicast, now that it is gone";
  directory = StartDirectoryAgent(kDirectory);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
}

TEST_F(DirectoryTest, AfterAKillAndARestartWithinASecondEverythingIsThereAgain) {
  Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  for (int kills = 0; kills < 3; ++kills) {
    ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
    directory.reset();
    directory = StartDirectoryAgent(kDirectory);
  }
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
}

TEST_F(DirectoryTest, OneThatEndsSaysSo) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"}));
  EXPECT_EQ(directory->Stop(), 0);
  EXPECT_TRUE(own->WaitForLog("directory agent 127.0.0.3 is going down")) << own->Log();
  EXPECT_THAT(Find("service:x"), ElementsAre("service:x://own"));
}

TEST_F(DirectoryTest, OneThatIsSilentIsGivenUp) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"}));
  directory->Send(SIGSTOP);
  EXPECT_EQ(Register("service:x://program"), SLP_OK);
  EXPECT_TRUE(own->WaitForLog("directory agent 127.0.0.3 does not answer")) << own->Log();
  EXPECT_THAT(Find("service:x"), ElementsAre("service:x://own", "service:x://program"));
}

// The daemon has no services of its own, so nothing but searches makes it turn to the agent. A host that is
// gone is silent; one whose agent alone is gone refuses the port, which costs nobody anything.
TEST_F(DirectoryTest, ASilentOneCostsTheFirstSearchAlone) {
  const std::string waits = "net.slp.datagramTimeouts = 1500,1500\n";
  const std::string url = "service:x://neighbour";
  const Daemon own = StartServiceAgent(kOwn, {}, waits);
  const Daemon neighbour = StartServiceAgent(kNeighbour, Service(url));
  const Milliseconds by_multicast = TimeOfProgram(*own, "service:x", url);
  const Daemon directory = StartDirectoryAgent(kDirectory);
  ASSERT_TRUE(own->WaitForLog("directory agent 127.0.0.3 is there")) << own->Log();
  directory->Send(SIGSTOP);
  EXPECT_GE(TimeOfProgram(*own, "service:x", url), Milliseconds(3000)) << "it is asked twice";
  ASSERT_TRUE(own->WaitForLog("directory agent 127.0.0.3 does not answer", kUntilFoundOut)) << own->Log();
  kelsd::support::MachineDelay delay;
  const Milliseconds later = TimeOfProgram(*own, "service:x", url);
  EXPECT_LT(later, by_multicast + Milliseconds(1500) + delay.Allowance());
}

TEST_F(DirectoryTest, AServiceAgentThatEndsTakesItsServicesAlong) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn, Service("service:x://own"));
  const Daemon neighbour = StartServiceAgent(kNeighbour, Service("service:x://neighbour"));
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://neighbour", "service:x://own"}));
  EXPECT_EQ(neighbour->Stop(), 0);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"}));
}

TEST_F(DirectoryTest, EachServesItsScopes) {
  const Daemon one = StartDirectoryAgent(kDirectory, "net.slp.useScopes = DEFAULT\n");
  const Daemon two = StartDirectoryAgent(kOther, "net.slp.useScopes = DEFAULT,LAB\n");
  const Daemon own =
      StartServiceAgent(kOwn, "service:x://lab,en,65535\nscopes=LAB\n\n" + Service("service:x://own"),
                        "net.slp.useScopes = DEFAULT,LAB\n");
  ASSERT_TRUE(ComesToHave(kDirectory, "service:x", {"service:x://own"})) << own->Log();
  ASSERT_TRUE(ComesToHave(kOther, "service:x", {"service:x://own"})) << own->Log();
  ExpectAnsweredByAgents(*own, "LAB", {"service:x://lab", "service:x://own"});
}

TEST_F(DirectoryTest, WhatIsTooLongForADatagramIsRegisteredByTcp) {
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const Daemon own = StartServiceAgent(kOwn);
  ASSERT_TRUE(own->WaitForLog("directory agent 127.0.0.3 is there")) << own->Log();
  const std::string url = "service:x://" + std::string(2000, 'h');
  EXPECT_EQ(Register(url), SLP_OK);
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", {url})) << own->Log();
}

TEST_F(DirectoryTest, ADirectoryAgentIsAServiceAgentToo) {
  const Daemon own = StartDirectoryAgent(kOwn);
  const Daemon other = StartDirectoryAgent(kOther);
  EXPECT_EQ(Register("service:x://program"), SLP_OK);
  EXPECT_THAT(FindAt(kOwn, "service:x"), ElementsAre("service:x://program"));
  EXPECT_TRUE(ComesToHave(kOther, "service:x", {"service:x://program"})) << own->Log();
  EXPECT_THAT(Find("service:directory-agent"),
              ElementsAre("service:directory-agent://127.0.0.2", "service:directory-agent://127.0.0.4"));
}

TEST_F(DirectoryTest, HundredsOfServicesComeToADirectoryAgentAndGo) {
  std::string registrations;
  // A daemon that ends has two seconds for them, with sanitizers on a busy machine, too.
  constexpr int kServices = 300;
  constexpr Milliseconds kTimeForThem{2000};
  for (int i = 0; i < kServices; ++i) {
    registrations += Service("service:x://" + std::to_string(i));
  }
  // A machine that stands still can take the two seconds: only what is left behind in less time is wrong.
  constexpr int kTries = 3;
  Milliseconds took = kTimeForThem;
  kelsd::support::MachineDelay delay;
  for (int i = 0; i < kTries && took >= kTimeForThem; ++i) {
    const Daemon own = StartServiceAgent(kOwn, registrations);
    const Daemon directory = StartDirectoryAgent(kDirectory);
    const std::vector<std::string> all = FindAt(kOwn, "service:x");
    EXPECT_EQ(all.size(), static_cast<std::size_t>(kServices));
    EXPECT_TRUE(ComesToHave(kDirectory, "service:x", all)) << own->Log();
    took = TimeOf([&] { EXPECT_EQ(own->Stop(), 0); });
    if (took < kTimeForThem) {
      EXPECT_THAT(FindAt(kDirectory, "service:x"), IsEmpty());
    }
  }
  EXPECT_LT(took, kTimeForThem + delay.Allowance());
}

}  // namespace
}  // namespace slp::integration
