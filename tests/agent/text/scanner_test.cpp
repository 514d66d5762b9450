#include "text/scanner.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {
namespace {

TEST(Scanner, StopsAtTheEndHoweverOftenItIsAsked) {
  Scanner scanner("a");
  EXPECT_EQ(scanner.Peek(), 'a');
  EXPECT_EQ(scanner.Take(), 'a');
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(scanner.AtEnd());
    EXPECT_EQ(scanner.Peek(), std::nullopt);
    EXPECT_EQ(scanner.Take(), std::nullopt);
    EXPECT_FALSE(scanner.TakeIf('a'));
    EXPECT_FALSE(scanner.TakePrefix("a"));
    EXPECT_TRUE(scanner.TakePrefix(""));
    EXPECT_EQ(scanner.TakeEscape(), std::nullopt);
    scanner.SkipSpace();
    EXPECT_EQ(scanner.TakeWhile([](char) { return true; }), "");
    EXPECT_EQ(scanner.Rest(), "");
  }
}

TEST(Scanner, TakesAWholeEscapeOrNothing) {
  for (const char* text : {"", "\\", "\\2", "\\2g", "\\g2", "x2C", "2C"}) {
    Scanner scanner(text);
    EXPECT_EQ(scanner.TakeEscape(), std::nullopt) << text;
    EXPECT_EQ(scanner.Rest(), text);
  }
  Scanner scanner("\\fFx");
  EXPECT_EQ(scanner.TakeEscape(), 0xFF);
  EXPECT_EQ(scanner.Rest(), "x");
}

TEST(Scanner, TakesAPrefixInEitherCase) {
  Scanner scanner("SerVice:x");
  EXPECT_FALSE(scanner.TakePrefix("service;"));
  EXPECT_TRUE(scanner.TakePrefix("service:"));
  EXPECT_FALSE(scanner.TakePrefix("xy"));
  EXPECT_EQ(scanner.Rest(), "x");
}

}  // namespace
}  // namespace slp
