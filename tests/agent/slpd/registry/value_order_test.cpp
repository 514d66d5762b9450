#include "slpd/registry/value_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ValueOrderTest : public testing::Test {
 protected:
  void Insert(std::uint32_t value, std::string text) {
    texts_[value] = std::move(text);
    order_.Insert(value);
  }

  void Erase(std::uint32_t value) {
    order_.Erase(value);
    texts_.erase(value);
  }

  /// At most `most` of them.
  std::vector<std::uint32_t> From(std::string_view from, std::size_t most = SIZE_MAX) const {
    std::vector<std::uint32_t> values;
    order_.VisitFrom(from, [&](std::uint32_t value, std::string_view text) {
      EXPECT_EQ(text, texts_.at(value));
      values.push_back(value);
      return values.size() < most;
    });
    return values;
  }

  std::map<std::uint32_t, std::string> texts_;
  ValueOrder order_{[this](std::uint32_t value) -> std::string_view { return texts_.at(value); }};
};

TEST_F(ValueOrderTest, AnEmptyOneShowsNothing) {
  EXPECT_THAT(From(""), IsEmpty());
  Insert(1, "a");
  Erase(1);
  EXPECT_THAT(From(""), IsEmpty());
}

TEST_F(ValueOrderTest, ShowsTheTextsInOrder) {
  Insert(1, "b");
  Insert(2, "a");
  Insert(3, "ab");
  Insert(4, "\xFF");  // bytes count as unsigned
  Insert(5, std::string("\0", 1));
  EXPECT_THAT(From(""), ElementsAre(5, 2, 3, 1, 4));
  EXPECT_THAT(From("ab"), ElementsAre(3, 1, 4));
  EXPECT_THAT(From("ac"), ElementsAre(1, 4));
  EXPECT_THAT(From("ac", 1), ElementsAre(1));
  EXPECT_THAT(From("\xFF\xFF"), IsEmpty());
}

TEST_F(ValueOrderTest, EqualTextsAreAllThereAndLeaveOneByOne) {
  for (const std::uint32_t value : {3U, 1U, 2U}) {
    Insert(value, "same");
  }
  EXPECT_THAT(From("same"), ElementsAre(1, 2, 3));
  Erase(2);
  EXPECT_THAT(From("same"), ElementsAre(1, 3));
}

// A key of five digits, so that texts and numbers have the same order.
std::string Digits(std::uint32_t number) {
  return std::to_string(10'000 + number);
}

TEST_F(ValueOrderTest, WhatIsLeftAfterManyErasuresStandsInFewPieces) {
  constexpr std::uint32_t kValues = 40'000;
  for (std::uint32_t value = 0; value < kValues; ++value) {
    Insert(value, Digits(value));
  }
  EXPECT_GE(order_.pieces(), kValues / 512);
  std::vector<std::uint32_t> gone;
  for (std::uint32_t value = 0; value < kValues; ++value) {
    if (value % 100 != 0) {
      gone.push_back(value);
    }
  }
  std::shuffle(gone.begin(), gone.end(), std::mt19937(1));
  for (const std::uint32_t value : gone) {
    Erase(value);
  }
  EXPECT_LE(order_.pieces(), 4U) << "400 values";
  EXPECT_EQ(From("").size(), kValues / 100);
  EXPECT_THAT(From(Digits(20'000), 2), ElementsAre(20'000, 20'100));
}

TEST_F(ValueOrderTest, ComingAndGoingAtTheEdgeOfAPieceChangesNothing) {
  for (std::uint32_t value = 0; value < 2000; ++value) {
    Insert(value, Digits(value));
  }
  // A piece that is about to become too short keeps its length or joins, whichever: not one and then the
  // other.
  std::set<std::size_t> pieces;
  for (std::uint32_t value = 0; value < 1000; ++value) {
    Erase(value);
    const std::size_t now = order_.pieces();
    for (int i = 0; i < 3; ++i) {
      Insert(value, Digits(value));
      Erase(value);
      pieces.insert(order_.pieces());
      ASSERT_EQ(order_.pieces(), now) << value;
    }
  }
  EXPECT_GT(pieces.size(), 1U);
}

TEST_F(ValueOrderTest, AgreesWithASortedSetThroughManyChanges) {
  std::mt19937 random(1);
  std::set<std::pair<std::string, std::uint32_t>> expected;
  const auto expect_agreement = [&](const std::string& from) {
    std::vector<std::uint32_t> values;
    for (auto place = expected.lower_bound({from, 0}); place != expected.end(); ++place) {
      values.push_back(place->second);
    }
    ASSERT_EQ(From(from), values) << from;
  };
  // Grows to thousands of values, so that there are many pieces, and back to none.
  for (std::uint32_t step = 0; step < 20'000; ++step) {
    const std::uint32_t value = random() % 6000;
    const auto present = texts_.find(value);
    if (present != texts_.end() && (step > 10'000 || random() % 4 == 0)) {
      expected.erase({present->second, value});
      Erase(value);
    } else if (present == texts_.end() && step <= 10'000) {
      const std::string text = std::to_string(random() % 3000);
      expected.insert({text, value});
      Insert(value, text);
    }
    if (step % 500 == 0) {
      expect_agreement(std::to_string(random() % 3000));
    }
  }
  expect_agreement("");
  while (!texts_.empty()) {
    Erase(texts_.begin()->first);
  }
  EXPECT_THAT(From(""), IsEmpty());
}

}  // namespace
}  // namespace slp
