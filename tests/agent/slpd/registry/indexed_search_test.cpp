// Searches that the value index narrows, against looking at every service.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

constexpr Seconds kStart{1000};
constexpr int kUrls = 60;
const std::string kType = "service:thing:http";

class IndexedSearchTest : public testing::TestWithParam<unsigned> {
 protected:
  template <typename T>
  T OneOf(std::initializer_list<T> choices) {
    return *(choices.begin() + random_() % choices.size());
  }

  int Below(unsigned bound) { return static_cast<int>(random_() % bound); }

  std::string Tag() { return OneOf<std::string>({"a", "B", "ab", "room", std::string(100, 't')}); }

  /// Long ones differ only behind what the index keeps of them.
  std::string Text() {
    return OneOf<std::string>({"x", "X", "xy", "x y", "x  Y", "yx", "zz", "true story", "*x", "10.5",
                               std::string(70, 'q'), std::string(200, 'q') + "a",
                               std::string(200, 'q') + "b"});
  }

  /// A list's values are of one type.
  std::string Values() {
    const int kind = Below(5);
    std::string values;
    for (int count = 1 + Below(3); count != 0; --count) {
      values += values.empty() ? "" : ",";
      values += kind == 0 ? std::to_string(OneOf({-2147483647, -300, -1, 0, 1, 2, 10, 255, 256, 2147483647}))
                : kind == 1 ? OneOf<std::string>({"true", "FALSE"})
                : kind == 2 ? OneOf<std::string>({"\\FF\\00", "\\FF\\01\\FF", "\\FF\\fe", "\\FF\\01"})
                            : Text();
    }
    return values;
  }

  std::string Attributes() {
    std::map<std::string, std::string> attributes;
    for (int count = Below(4); count != 0; --count) {
      attributes[Tag()] = Below(4) == 0 ? "" : '=' + (Below(6) == 0 ? "" : Values());
    }
    std::string list;
    for (const auto& [tag, values] : attributes) {
      list += (list.empty() ? "" : ",") + (values.empty() ? tag : '(' + tag + values + ')');
    }
    return list;
  }

  std::string Pattern() {
    return OneOf<std::string>({"*", "x*", "*x", "X *", "*y*", "q*", "*a", std::string(200, 'q') + "*",
                               std::string(60, 'q') + "*b", "x*y", "*2*", "\\2a*", "zzz*"});
  }

  std::string Filter(int depth) {
    const int kind = Below(depth == 0 ? 6 : 9);
    if (kind >= 6) {
      std::string filter = kind == 6 ? "(!" : kind == 7 ? "(&" : "(|";
      for (int count = kind == 6 ? 1 : 1 + Below(3); count != 0; --count) {
        filter += Filter(depth - 1);
      }
      return filter + ')';
    }
    const std::string one = Values();
    std::string operand = one.substr(0, one.find(','));
    if (operand.starts_with('*')) {
      operand.replace(0, 1, "\\2a");
    }
    return '(' + Tag() + OneOf<std::string>({"=", "~=", "<=", ">=", "=" + Pattern()}) +
           (Below(8) == 0 ? "" : operand) + ')';
  }

  /// Registers, replaces, updates or removes one service.
  void ChangeOne() {
    const std::string url = kType + "://" + std::to_string(Below(kUrls));
    const Registration registration = MakeRegistration(url, kType, Attributes());
    const int kind = Below(8);
    if (kind == 0) {
      static_cast<void>(registry_.Deregister(url, {"DEFAULT"}, {}, Unlimited()));
    } else if (kind == 1) {
      static_cast<void>(registry_.Deregister(url, {"DEFAULT"}, {Tag()}, Unlimited()));
    } else if (kind == 2) {
      static_cast<void>(registry_.Update(registration, kStart));
    } else {
      EXPECT_EQ(registry_.Register(registration, kStart), Error::kOk) << registration.attributes;
    }
  }

  std::vector<std::string> LookAtEach(const Predicate& predicate) const {
    std::vector<std::string> urls;
    registry_.ForEach([&](const RegistrationView& service) {
      const Result<AttributeList> attributes = AttributeList::Parse(service.attributes);
      EXPECT_TRUE(attributes) << service.attributes;
      if (attributes && predicate.Matches(*attributes, Unlimited())) {
        urls.emplace_back(service.url);
      }
    });
    std::sort(urls.begin(), urls.end());
    return urls;
  }

  std::mt19937 random_{GetParam()};
  RecordedEvents events_;
  Registry registry_{events_};
};

TEST_P(IndexedSearchTest, FindsWhatLookingAtEachServiceFinds) {
  int parsed = 0;
  int found = 0;
  std::uint64_t looked_at = 0;
  for (int step = 0; step < 1000; ++step) {
    ChangeOne();
    const std::string filter = Filter(3);
    const Result<Predicate> predicate = Predicate::Parse(filter);
    if (!predicate) {
      continue;
    }
    ++parsed;
    const std::vector<std::string> expected = LookAtEach(*predicate);
    const std::uint64_t before = registry_.touched();
    ASSERT_EQ(FindUrls(registry_, MakeQuery(kType, filter), kStart), expected) << filter;
    looked_at += registry_.touched() - before;
    found += static_cast<int>(expected.size());
  }
  // The filters are worth the comparison: most can be read, they find something, and the index is used.
  EXPECT_GT(parsed, 700);
  EXPECT_GT(found, 1000);
  EXPECT_LT(looked_at, static_cast<std::uint64_t>(parsed) * kUrls * 3 / 4);
}

INSTANTIATE_TEST_SUITE_P(Seeds, IndexedSearchTest, testing::Range(1U, 4U));

}  // namespace
}  // namespace slp
