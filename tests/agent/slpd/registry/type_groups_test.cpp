#include "slpd/registry/type_groups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint16_t kPrinter = 463;
constexpr std::uint16_t kPrinterLpr = 407;
constexpr std::uint16_t kX = 99;

class TypeGroupsTest : public testing::Test {
 protected:
  void Register(const std::string& url, const std::string& type, const std::string& language = "en") {
    Registration registration = MakeRegistration(url, type);
    registration.language = language;
    ASSERT_EQ(registry_.Register(registration, Seconds(0)), Error::kOk);
  }

  void Deregister(const std::string& url) {
    ASSERT_EQ(registry_.Deregister(url, {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  }

  std::vector<std::uint16_t> Numbers() const { return registry_.type_groups().Numbers(); }
  std::uint64_t Changes() const { return registry_.type_groups().changes(); }

  RecordedEvents events_;
  Registry registry_{events_};
};

TEST_F(TypeGroupsTest, AConcreteTypeIsInTheGroupOfItsAbstractOneToo) {
  EXPECT_THAT(Numbers(), IsEmpty());
  Register("service:printer:lpr://h", "service:printer:lpr");
  EXPECT_THAT(Numbers(), ElementsAre(kPrinterLpr, kPrinter));
  Deregister("service:printer:lpr://h");
  EXPECT_THAT(Numbers(), IsEmpty());
}

TEST_F(TypeGroupsTest, AGroupIsThereAsLongAsATypeOfItIs) {
  Register("service:printer:lpr://h", "service:printer:lpr");
  const std::uint64_t changes = Changes();
  Register("service:printer:lpr://h", "service:printer:lpr", "de");
  Register("service:printer:lpr://other", "SERVICE:Printer:LPR");
  EXPECT_EQ(Changes(), changes) << "nothing new";
  Register("service:printer:ipp://h", "service:printer:ipp");
  Deregister("service:printer:lpr://h");
  EXPECT_THAT(Numbers(), Contains(kPrinterLpr));
  Deregister("service:printer:lpr://other");
  EXPECT_THAT(Numbers(), testing::AllOf(Contains(kPrinter), testing::Not(Contains(kPrinterLpr))));
  Deregister("service:printer:ipp://h");
  EXPECT_THAT(Numbers(), IsEmpty());
}

TEST_F(TypeGroupsTest, AServiceThatExpiresOrBecomesAnotherTypeLeavesItsGroup) {
  Register("http://h", "service:x");
  EXPECT_THAT(Numbers(), ElementsAre(kX));
  Register("http://h", "service:printer");
  EXPECT_THAT(Numbers(), ElementsAre(kPrinter));
  registry_.Expire(Seconds(100'000));
  EXPECT_THAT(Numbers(), IsEmpty());
}

TEST_F(TypeGroupsTest, TenThousandTypesAreInNoMoreGroupsThanThereAre) {
  for (int i = 0; i < 10'000; ++i) {
    const std::string type = "service:t" + std::to_string(i * 7919);
    Register(type + "://h", type);
  }
  EXPECT_THAT(Numbers(), SizeIs(testing::AllOf(testing::Gt(1000U), testing::Le(kTypeGroups))));
  EXPECT_LE(Changes(), kTypeGroups);
}

}  // namespace
}  // namespace slp
