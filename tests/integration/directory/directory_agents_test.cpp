#include <csignal>

#include "integration/directory/directory_fixture.h"

namespace slp::integration {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Lt;

constexpr const char* kDirectory = "127.0.0.3";
constexpr const char* kOther = "127.0.0.4";
constexpr const char* kOwn = "127.0.0.2";
constexpr const char* kNeighbour = "127.0.0.5";

// Two quiet rounds of a multicast search with the default timeouts.
constexpr std::chrono::milliseconds kMulticastSearch{1250};

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
  EXPECT_THAT(TimeOf([&] { EXPECT_EQ(Find("service:x"), all); }), Lt(kMulticastSearch));
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
  EXPECT_THAT(TimeOf([&] {
                EXPECT_THAT(Find("service:x", "LAB"), ElementsAre("service:x://lab", "service:x://own"));
              }),
              Lt(kMulticastSearch));
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

TEST_F(DirectoryTest, AThousandServicesComeToADirectoryAgentAndGo) {
  std::string registrations;
  constexpr int kServices = 1000;
  for (int i = 0; i < kServices; ++i) {
    registrations += Service("service:x://" + std::to_string(i));
  }
  const Daemon own = StartServiceAgent(kOwn, registrations);
  const Daemon directory = StartDirectoryAgent(kDirectory);
  const std::vector<std::string> all = FindAt(kOwn, "service:x");
  EXPECT_EQ(all.size(), static_cast<std::size_t>(kServices));
  EXPECT_TRUE(ComesToHave(kDirectory, "service:x", all)) << own->Log();
  EXPECT_EQ(own->Stop(), 0);
  EXPECT_THAT(FindAt(kDirectory, "service:x"), IsEmpty());
}

}  // namespace
}  // namespace slp::integration
