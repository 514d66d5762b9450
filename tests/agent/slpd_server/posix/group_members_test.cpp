// Groups of IPv6 on the loopback interface, by real sockets, as the system lists them. It sends nothing to a
// group there; what is heard is shown by the tests of networks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <fstream>

#include "agent/slpd_server/client.h"
#include "agent/slpd_server/listening.h"
#include "net/addresses.h"
#include "support/free_port.h"
#include "support/ipv6.h"
#include "support/wait_until.h"
#include "text/service_type.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Other tests that run beside these have services whose types are in other groups.
constexpr std::uint16_t kSomeType = 1000;
constexpr std::uint16_t kAnotherType = 1001;
constexpr std::uint16_t kManyTypes = 900;

/// Whether a program of this host hears the group of a type through the loopback interface.
bool IsHeard(GroupReach reach, std::uint16_t number) {
  std::string wanted;
  for (const unsigned char byte : Ipv6Group(reach, kTypeGroupsBegin + number).to_bytes()) {
    constexpr char kDigits[] = "0123456789abcdef";
    wanted += {kDigits[byte / 16], kDigits[byte % 16]};
  }
  std::ifstream list("/proc/net/igmp6");
  std::string index;
  std::string name;
  std::string group;
  for (std::string rest; list >> index >> name >> group; std::getline(list, rest)) {
    if (name == "lo" && group == wanted) {
      return true;
    }
  }
  return false;
}

bool IsHeard(std::uint16_t number) {
  return IsHeard(GroupReach::kLink, number) && IsHeard(GroupReach::kSite, number);
}

/// Holds the groups of these tests for one process at a time: the system lists what all of them hear. Its
/// mark is a port of the loopback network at which no test listens, which the system takes away with the
/// process.
class GroupsInUse {
 public:
  /// Whether it got them, for which it waits as long as many others take.
  bool Take() {
    return kelsd::support::WaitUntil([this] {
      asio::error_code error;
      mark_.bind({asio::ip::make_address("127.83.76.81"), 20000}, error);
      return !error;
    });
  }

 private:
  asio::io_context io_;
  asio::ip::tcp::acceptor mark_{io_, asio::ip::tcp::v4()};
};

class GroupMembersTest : public ListeningTest {
 protected:
  void SetUp() override {
    if (!support::HasIpv6()) {
      GTEST_SKIP() << support::kNoIpv6;
    }
    ASSERT_TRUE(groups_.Take());
    ASSERT_TRUE(Apply(plan_));
    ASSERT_THAT(problems_, IsEmpty());
  }

  void HearTypes(const std::vector<std::uint16_t>& numbers) {
    problems_.clear();
    loop_.Do([&] { listeners_->HearTypes(numbers, problems_); });
  }

  GroupsInUse groups_;
  ListenPlan plan_{
      {{asio::ip::address_v6::loopback(), "lo", true, LoopbackIndex()}}, support::FreePort(), 255, {}};
};

TEST_F(GroupMembersTest, GroupsOfTypesAreHeardAsLongAsTheyAreToBe) {
  EXPECT_FALSE(IsHeard(GroupReach::kLink, kSomeType));
  HearTypes({kSomeType, kAnotherType});
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_TRUE(IsHeard(kSomeType));
  EXPECT_TRUE(IsHeard(kAnotherType));
  HearTypes({kAnotherType});
  EXPECT_FALSE(IsHeard(GroupReach::kLink, kSomeType) || IsHeard(GroupReach::kSite, kSomeType));
  EXPECT_TRUE(IsHeard(kAnotherType));
}

// More than one socket may hold.
TEST_F(GroupMembersTest, ManyGroupsAreHeardAtOnce) {
  std::vector<std::uint16_t> many;
  for (std::uint16_t number = 0; number < kManyTypes; ++number) {
    many.push_back(number);
  }
  HearTypes(many);
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_TRUE(IsHeard(0));
  EXPECT_TRUE(IsHeard(kManyTypes - 1));
}

TEST_F(GroupMembersTest, APlaceThatLeavesTheGroupsLeavesThoseOfTypesToo) {
  HearTypes({kSomeType});
  plan_.places[0].group = false;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_FALSE(IsHeard(GroupReach::kLink, kSomeType));
  plan_.places[0].group = true;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_TRUE(IsHeard(kSomeType));
}

TEST_F(GroupMembersTest, AnotherPortTakesTheGroupsAlong) {
  HearTypes({kSomeType});
  plan_.port = support::FreePort();
  ASSERT_TRUE(Apply(plan_));
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_TRUE(IsHeard(kSomeType));
  HearTypes({});
  EXPECT_FALSE(IsHeard(GroupReach::kLink, kSomeType));
}

// An interface that has left and come back with its address has another index.
TEST_F(GroupMembersTest, GroupsAreJoinedAnewOnAnotherInterface) {
  HearTypes({kSomeType});
  plan_.places[0].interface_index = LoopbackIndex() + 1'000'000;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_THAT(problems_, SizeIs(2)) << "there is no such interface: for types, and for all else";
  EXPECT_FALSE(IsHeard(GroupReach::kLink, kSomeType));
  plan_.places[0].interface_index = LoopbackIndex();
  ASSERT_TRUE(Apply(plan_));
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_TRUE(IsHeard(kSomeType));
}

// Sockets of IPv6 could share the address.
TEST_F(GroupMembersTest, AnotherAgentIsKeptOffTheAddress) {
  std::vector<std::string> problems;
  EXPECT_FALSE(loop_.Do([&] {
    Listeners other(loop_.io(), receiver_, ConnectionLimits{});
    return other.Apply(plan_, problems);
  }));
  EXPECT_THAT(problems, ElementsAre(HasSubstr("another SLP agent may be running")));
}

}  // namespace
}  // namespace slp
