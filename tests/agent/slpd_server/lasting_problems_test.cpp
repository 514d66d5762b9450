#include "slpd/server/lasting_problems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kNow{100};

TEST(LastingProblems, AreToldWhenTheyLastAndOnce) {
  LastingProblems problems;
  EXPECT_THAT(problems.Review({"a"}, kNow), IsEmpty());
  EXPECT_THAT(problems.Review({"a"}, kNow + Seconds(1)), IsEmpty());
  EXPECT_THAT(problems.Review({"a", "b"}, kNow + Seconds(2)), ElementsAre("a"));
  EXPECT_THAT(problems.Review({"a", "b"}, kNow + Seconds(4)), ElementsAre("b"));
  EXPECT_THAT(problems.Review({"a", "b"}, kNow + Seconds(99)), IsEmpty());
}

TEST(LastingProblems, OneThatComesBackIsTheNewOneThatItIs) {
  LastingProblems problems;
  problems.Start({"a"}, kNow);
  EXPECT_THAT(problems.Review({}, kNow + Seconds(5)), IsEmpty());
  EXPECT_THAT(problems.Review({"a"}, kNow + Seconds(6)), IsEmpty());
  EXPECT_THAT(problems.Review({"a"}, kNow + Seconds(8)), ElementsAre("a"));
}

TEST(LastingProblems, AreLookedForAgainAsLongAsThereAreAny) {
  LastingProblems problems;
  EXPECT_EQ(problems.ReviewAfter(kNow), std::nullopt);
  problems.Start({"a"}, kNow);
  EXPECT_EQ(problems.ReviewAfter(kNow), LastingProblems::kSoon) << "although it was told";
  EXPECT_EQ(problems.ReviewAfter(kNow + Seconds(59)), LastingProblems::kSoon);
  EXPECT_EQ(problems.ReviewAfter(kNow + Seconds(60)), LastingProblems::kLater);
  problems.Add({"b"}, kNow + Seconds(61));
  EXPECT_EQ(problems.ReviewAfter(kNow + Seconds(61)), LastingProblems::kSoon);
  problems.Review({}, kNow + Seconds(64));
  EXPECT_EQ(problems.ReviewAfter(kNow + Seconds(64)), std::nullopt);
}

TEST(LastingProblems, WhatIsAddedIsToldAtOnceAndNotAgain) {
  LastingProblems problems;
  EXPECT_THAT(problems.Add({"a"}, kNow), ElementsAre("a"));
  EXPECT_THAT(problems.Add({"a"}, kNow), IsEmpty());
  EXPECT_THAT(problems.Review({"a"}, kNow + Seconds(5)), IsEmpty());
}

}  // namespace
}  // namespace slp
