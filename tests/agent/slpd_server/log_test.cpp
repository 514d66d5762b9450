#include "slpd/server/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::system_clock;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class LogTest : public testing::Test {
 protected:
  // The lines without their times.
  std::vector<std::string> Lines() const {
    constexpr std::size_t kTimeLength = 24;
    std::vector<std::string> lines;
    std::istringstream text(stream_.str());
    for (std::string line; std::getline(text, line);) {
      lines.push_back(line.size() > kTimeLength ? line.substr(kTimeLength) : line);
    }
    return lines;
  }

  system_clock::time_point now_ = system_clock::time_point(seconds(1'700'000'000)) + milliseconds(7);
  std::ostringstream stream_;
  Log log_{stream_, [this] { return now_; }};
};

TEST_F(LogTest, ALineIsTimeKindAndText) {
  log_.Write(LogKind::kState, "slpd: ended");
  EXPECT_THAT(stream_.str(), MatchesRegex("2023-11-1. ..:..:20\\.007 state slpd: ended\n"));
}

TEST_F(LogTest, EveryKindHasItsName) {
  for (const LogKind kind : {LogKind::kState, LogKind::kProblem, LogKind::kRegistration, LogKind::kMessage,
                             LogKind::kDrop, LogKind::kRefusal}) {
    log_.Write(kind, "x");
  }
  EXPECT_EQ(Lines(), (std::vector<std::string>{"state x", "problem x", "registration x", "message x",
                                               "drop x", "refusal x"}));
}

TEST_F(LogTest, ControlCharactersCanNotForgeALine) {
  log_.Write(LogKind::kMessage, std::string("a\nb\r\t\x7F\0z ü", 10));
  EXPECT_EQ(Lines(), std::vector<std::string>{"message a\\x0Ab\\x0D\\x09\\x7F\\x00z \xC3"});
}

TEST_F(LogTest, AFloodOfOneKindIsCutAndTheOthersGoOn) {
  for (int i = 0; i < 125; ++i) {
    log_.Write(LogKind::kProblem, "p");
  }
  EXPECT_EQ(Lines().size(), 120U);
  log_.Write(LogKind::kState, "s");
  EXPECT_EQ(Lines().back(), "state s");
  now_ += seconds(59);
  log_.Write(LogKind::kProblem, "p");
  EXPECT_EQ(Lines().back(), "state s");
  now_ += seconds(1);
  log_.Write(LogKind::kProblem, "again");
  const std::vector<std::string> lines = Lines();
  EXPECT_EQ(lines.size(), 123U);
  EXPECT_EQ(lines[121], "problem 6 more lines of this kind were left out");
  EXPECT_EQ(lines[122], "problem again");
}

TEST_F(LogTest, RefusalsTakeOneLineAMinute) {
  for (int i = 0; i < 3; ++i) {
    log_.Write(LogKind::kRefusal, std::to_string(i));
  }
  now_ += seconds(60);
  log_.Write(LogKind::kRefusal, "next");
  EXPECT_EQ(Lines(), (std::vector<std::string>{"refusal 0", "refusal 2 more lines of this kind were left out",
                                               "refusal next"}));
}

TEST_F(LogTest, TellsProblemsAsFarAsItWritesThem) {
  std::vector<std::string> told;
  log_.TellProblems([&told](std::string_view text) { told.emplace_back(text); });
  log_.Write(LogKind::kState, "s");
  log_.Write(LogKind::kProblem, "first");
  EXPECT_EQ(told, std::vector<std::string>{"first"});
  for (int i = 0; i < 125; ++i) {
    log_.Write(LogKind::kProblem, "p");
  }
  EXPECT_EQ(told.size(), 120U);
  log_.TellProblems({});
  now_ += seconds(60);
  log_.Write(LogKind::kProblem, "p");
  EXPECT_EQ(told.size(), 120U);
}

TEST_F(LogTest, GoesOnAtTheEndOfAFileOrEmptiesIt) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("log", "before\n");
  std::string problem;
  ASSERT_TRUE(log_.Open(path, true, problem));
  log_.Write(LogKind::kState, "one");
  EXPECT_THAT(folder.ReadText("log"), MatchesRegex("before\n.* state one\n"));
  ASSERT_TRUE(log_.Open(path, false, problem));
  log_.Write(LogKind::kState, "two");
  EXPECT_THAT(folder.ReadText("log"), AllOf(MatchesRegex(".* state two\n"), Not(HasSubstr("one"))));
  EXPECT_EQ(stream_.str(), "");
}

TEST_F(LogTest, StaysWhereItIsWhenAFileCanNotBeOpened) {
  const TemporaryFolder folder;
  std::string problem;
  EXPECT_FALSE(log_.Open(folder.File("missing/log"), true, problem));
  EXPECT_EQ(problem,
            "cannot open the log file " + folder.File("missing/log") + ": No such file or directory");
  log_.Write(LogKind::kState, "here");
  EXPECT_EQ(Lines(), std::vector<std::string>{"state here"});
}

}  // namespace
}  // namespace slp
