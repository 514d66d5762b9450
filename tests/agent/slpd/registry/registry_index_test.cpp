// How much of a large registry a search looks at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

constexpr Seconds kStart{1000};

/// Many services: type t0 to t99 in turn, each with a number of its own, one of ten rooms and,
/// every thousandth, a rare mark.
class LargeRegistry {
 public:
  explicit LargeRegistry(int services) {
    for (int i = 0; i < services; ++i) {
      const std::string type = "service:t" + std::to_string(i % 100) + ".tamro:http";
      Registration registration =
          MakeRegistration(type + "://10.0.0.1:" + std::to_string(i % 60000) + '/' + std::to_string(i), type,
                           "(x-id=" + std::to_string(i) + "),(x-room=room " + std::to_string(i / 100 % 10) +
                               ")" + (i / 100 % 100 == 0 ? ",(x-rare=true)" : ""));
      registration.lifetime = static_cast<std::uint16_t>(1000 + i % 1000);
      failures_ += registry.Register(registration, kStart) == Error::kOk ? 0 : 1;
    }
  }

  int failures() const { return failures_; }

  /// Found services, and looked at ones, of a search.
  std::pair<std::size_t, std::uint64_t> Search(std::string_view type, std::string_view predicate) {
    const std::uint64_t before = registry.touched();
    const std::size_t found = FindAll(registry, MakeQuery(type, predicate), kStart).size();
    return {found, registry.touched() - before};
  }

  RecordedEvents events;
  Registry registry{events};

 private:
  int failures_ = 0;
};

struct TouchCase {
  const char* type;
  const char* predicate;
  std::size_t found;
  std::uint64_t touched;
};

TEST(RegistryIndexTest, ASearchLooksOnlyAtWhatCanMatch) {
  LargeRegistry large(100'000);
  ASSERT_EQ(large.failures(), 0);
  const TouchCase cases[] = {
      {"service:t5.tamro:http", "", 1000, 1000},
      {"service:t5.tamro", "", 1000, 1000},
      {"service:t5", "", 0, 0},
      {"service:t5.tamro:ftp", "", 0, 0},
      {"service:t5.tamro:http", "(x-id=1205)", 1, 1},
      {"service:t5.tamro", "(X-ID=1205)", 1, 1},
      {"service:t5.tamro", "(x-id=1206)", 0, 0},
      {"service:t5.tamro", "(x-room=ROOM  3)", 100, 100},
      {"service:t5.tamro", "(x-rare=true)", 10, 10},
      {"service:t5.tamro", "(&(x-room=room 0)(x-rare=true))", 10, 10},
      {"service:t5.tamro", "(&(x-room=room 3)(x-rare=true))", 0, 10},
      {"service:t5.tamro", "(&(x-id>=0)(x-id=1205))", 1, 1},
      {"service:t5.tamro", "(&(x-room=*)(&(x-id=*)(x-rare=true)))", 10, 10},
      {"service:t5.tamro", "(|(x-id=1205)(x-id=1305))", 2, 2},
      {"service:t5.tamro", "(|(x-id=1205)(x-id=1205))", 1, 1},
      {"service:t5.tamro", "(|(x-id=1205)(x-rare=true))", 11, 11},
      {"service:t5.tamro", "(&(|(x-id=1205)(x-id=1305))(x-room=room 2))", 1, 2},
      {"service:t5.tamro", "(|(x-id=1205)(x-room=*2))", 100, 100},
      {"service:t5.tamro", "(!(x-room=room 3))", 900, 1000},
      {"service:t5.tamro", "(x-id>=99000)", 10, 10},
      {"service:t5.tamro", "(x-id<=1005)", 11, 11},
      {"service:t5.tamro", "(x-id>=100000)", 0, 0},
      {"service:t5.tamro", "(x-room>=Room 8)", 200, 200},
      {"service:t5.tamro", "(x-room=*  9)", 100, 100},
      {"service:t5.tamro", "(x-room=roof*)", 0, 0},
      {"service:t5.tamro", "(x-rare=*)", 10, 10},
      {"service:t5.tamro", "(x-nothing=*)", 0, 0},
      {"service:t5.tamro", "(x-id=*)", 1000, 1000},
  };
  for (const TouchCase& row : cases) {
    EXPECT_EQ(large.Search(row.type, row.predicate), std::pair(row.found, row.touched))
        << row.type << ' ' << row.predicate;
  }

  const std::uint64_t before = large.registry.touched();
  const Result<AttributeAnswer> attributes = large.registry.FindAttributesOfUrl(
      "service:t5.tamro:http://10.0.0.1:1205/1205", {"DEFAULT"}, "en", {"x-id"}, Unlimited());
  ASSERT_TRUE(attributes);
  EXPECT_EQ(attributes->attributes, "(x-id=1205)");
  EXPECT_EQ(large.registry.touched() - before, 1U);
}

TEST(RegistryIndexTest, TheIndexFollowsEveryChange) {
  LargeRegistry large(20'000);
  Registry& registry = large.registry;
  const std::string url = "service:t5.tamro:http://10.0.0.1:1205/1205";
  ASSERT_EQ(registry.Deregister(url, {"DEFAULT"}, {"x-room"}, Unlimited()), Error::kOk);
  EXPECT_EQ(large.Search("service:t5.tamro", "(x-room=room 2)"),
            std::pair(std::size_t{19}, std::uint64_t{19}));
  ASSERT_EQ(registry.Update(MakeRegistration(url, "service:t5.tamro:http", "(x-room=room 7)"), kStart),
            Error::kOk);
  EXPECT_EQ(large.Search("service:t5.tamro", "(x-room=room 7)"),
            std::pair(std::size_t{21}, std::uint64_t{21}));
  ASSERT_EQ(registry.Deregister(url, {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  EXPECT_EQ(large.Search("service:t5.tamro", "(x-id=1205)"), std::pair(std::size_t{0}, std::uint64_t{0}));
  registry.Expire(kStart + Seconds(1500));
  EXPECT_EQ(registry.size(), 9'980U);
  EXPECT_EQ(registry.NextExpiry(), Seconds(2501));
  registry.Expire(kStart + Seconds(2000));
  EXPECT_EQ(registry.size(), 0U);
  EXPECT_TRUE(registry.FindTypes({"DEFAULT"}, std::nullopt).empty());
}

}  // namespace
}  // namespace slp
