#include "service/conf_access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "support/fake_platform/fake_clock.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd {
namespace {

using Status = CSLPConfAccess::Status;

class ConfAccess : public testing::Test {
 protected:
  /// Opens a store on the file, sets a key and writes; the whole file then.
  std::string AfterSetting(const std::string& content, const std::string& key, const std::string& value) {
    folder.Write("slp.conf", content);
    CSLPConfAccess store(clock);
    EXPECT_EQ(store.Open(name, true, 2), Status::kSuccess);
    store.SetValue(key, value);
    EXPECT_EQ(store.Update(), Status::kSuccess);
    return folder.Read("slp.conf");
  }

  TemporaryFolder folder;
  std::string name = folder.Path("slp.conf");
  FakeClock clock;
};

TEST_F(ConfAccess, ReadsKeysAndValuesTrimmed) {
  folder.Write("slp.conf", "a=1\n  b c \t=  x = y \r\n;d=4\n#e=5\n  ;f=6\nno key\n=7\n\nempty =\nlast=8");
  CSLPConfAccess store(clock);
  ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
  EXPECT_EQ(store.GetValue("a"), "1");
  EXPECT_EQ(store.GetValue(" b c "), "x = y");
  EXPECT_EQ(store.GetValue("last"), "8");
  EXPECT_TRUE(store.HasKey("empty"));
  EXPECT_EQ(store.GetValue("empty"), "");
  for (const char* key : {"A", "d", ";d", "#e", ";f", "f", "no key", "", "8"}) {
    EXPECT_FALSE(store.HasKey(key)) << key;
    EXPECT_EQ(store.GetValue(key), "") << key;
  }
}

TEST_F(ConfAccess, KeepsCommentsUnknownKeysAndTheOrderOfLines) {
  const std::string before =
      "# one\n; two\n\nforeign=1\n key = old \nno key\n  # indented = comment\n=x\nz = 2\n";
  EXPECT_EQ(AfterSetting(before, "key", " new "),
            "# one\r\n; two\r\n\r\nforeign = 1\r\nkey = new\r\nno key\r\n  # indented = comment\r\n=x\r\nz = "
            "2\r\n");
}

TEST_F(ConfAccess, TakesEveryEndOfLine) {
  EXPECT_EQ(AfterSetting("# a\r\nk = 1\r\n", "k", "2"), "# a\r\nk = 2\r\n");
  EXPECT_EQ(AfterSetting("# a\nk = 1\n", "k", "2"), "# a\r\nk = 2\r\n");
  EXPECT_EQ(AfterSetting("# a\nk = 1", "k", "2"), "# a\r\nk = 2\r\n");
  EXPECT_EQ(AfterSetting("# a\r\r\nk = 1\r", "k", "2"), "# a\r\r\nk = 2\r\n");
  EXPECT_EQ(AfterSetting("\n\n", "k", "2"), "\r\n\r\nk = 2\r\n");
}

TEST_F(ConfAccess, AppendsAnAbsentKey) {
  EXPECT_EQ(AfterSetting("", " k ", " 2 "), "k = 2\r\n");
  EXPECT_EQ(AfterSetting("# k = 1\nK = 1", "k", "2"), "# k = 1\r\nK = 1\r\nk = 2\r\n");
}

TEST_F(ConfAccess, OfAKeyThatStandsTwiceTheLastCountsAndASetChangesAll) {
  folder.Write("slp.conf", "k = 1\nother = x\nk = 2\n");
  {
    CSLPConfAccess store(clock);
    ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
    EXPECT_EQ(store.GetValue("k"), "2");
    // The last one has this value already, the other one doesn't.
    store.SetValue("k", "2");
    EXPECT_EQ(store.Update(), Status::kSuccess);
  }
  EXPECT_EQ(folder.Read("slp.conf"), "k = 2\r\nother = x\r\nk = 2\r\n");
}

TEST_F(ConfAccess, WritesOnlyWhatWasChanged) {
  const std::string untouched = "k=1\n# comment";
  EXPECT_EQ(AfterSetting(untouched, "k", " 1 "), untouched);
}

TEST_F(ConfAccess, KeepsBytesThatAreNotAscii) {
  const std::string bytes = "# \xC3\xBC\xFF\x80 \x01\n";
  EXPECT_EQ(AfterSetting(bytes + "k\xE4 = \xF6\n", "k", "\xDF"),
            "# \xC3\xBC\xFF\x80 \x01\r\nk\xE4 = \xF6\r\nk = \xDF\r\n");
  EXPECT_EQ(AfterSetting(std::string("# a\0b\n", 6), "k", "1"), std::string("# a\0b\r\nk = 1\r\n", 14));
}

TEST_F(ConfAccess, KeepsAMegabyteOfComments) {
  std::string before;
  std::string after;
  for (int i = 0; before.size() < (1U << 20U); ++i) {
    const std::string line = "# comment number " + std::to_string(i);
    before += line + "\n";
    after += line + "\r\n";
  }
  EXPECT_TRUE(AfterSetting(before + "k = 1\n", "k", "2") == after + "k = 2\r\n");
}

TEST_F(ConfAccess, ShortensAFileThatBecomesShorter) {
  EXPECT_EQ(AfterSetting("k = " + std::string(5000, 'x') + "\r\n", "k", "1"), "k = 1\r\n");
}

TEST_F(ConfAccess, WritesMoreThanOnce) {
  CSLPConfAccess store(clock);
  ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
  store.SetValue("k", "1");
  EXPECT_EQ(store.Update(), Status::kSuccess);
  store.SetValue("k", "22");
  EXPECT_EQ(store.Update(), Status::kSuccess);
  EXPECT_EQ(folder.Read("slp.conf"), "k = 22\r\n");
}

TEST_F(ConfAccess, CreatesAMissingFileAndRemovesItAgainWhenItWasNeverWritten) {
  {
    CSLPConfAccess store(clock);
    ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
    EXPECT_TRUE(platform::FileExists(name));
    EXPECT_EQ(store.Update(), Status::kSuccess);
  }
  EXPECT_FALSE(platform::FileExists(name));
  {
    CSLPConfAccess store(clock);
    ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
    store.SetValue("k", "1");
    EXPECT_EQ(store.Update(), Status::kSuccess);
  }
  EXPECT_EQ(folder.Read("slp.conf"), "k = 1\r\n");
}

TEST_F(ConfAccess, KeepsAnEmptyFileThatWasThere) {
  folder.Write("slp.conf", "");
  {
    CSLPConfAccess store(clock);
    ASSERT_EQ(store.Open(name, true, 2), Status::kSuccess);
  }
  EXPECT_TRUE(platform::FileExists(name));
}

TEST_F(ConfAccess, ASecondWriterWaitsTwoToThreeSecondsAndGivesUp) {
  folder.Write("slp.conf", "k = 1\n");
  CSLPConfAccess first(clock);
  ASSERT_EQ(first.Open(name, true, 2), Status::kSuccess);
  for (int i = 0; i < 5; ++i) {
    // Wherever within a second the wait begins.
    clock.Sleep(230);
    const std::size_t sleeps_before = clock.Sleeps().size();
    CSLPConfAccess second(clock);
    EXPECT_EQ(second.Open(name, true, 2), Status::kOpenFailed);
    EXPECT_TRUE(second.HasTimedOut());
    std::uint32_t waited = 0;
    const std::vector<std::uint32_t> sleeps = clock.Sleeps();
    for (std::size_t at = sleeps_before; at < sleeps.size(); ++at) {
      waited += sleeps[at];
      EXPECT_LE(sleeps[at], 10U);
    }
    EXPECT_GT(waited, 2000U);
    EXPECT_LE(waited, 3000U);
  }
  EXPECT_EQ(folder.Read("slp.conf"), "k = 1\n");
}

TEST_F(ConfAccess, ASecondWriterGetsInWhenTheFirstHasGone) {
  auto first = std::make_unique<CSLPConfAccess>(clock);
  ASSERT_EQ(first->Open(name, true, 2), Status::kSuccess);
  first->SetValue("k", "1");
  clock.OnSleep([&] {
    if (clock.Sleeps().size() == 100 && first != nullptr) {
      EXPECT_EQ(first->Update(), Status::kSuccess);
      first.reset();
    }
  });
  CSLPConfAccess second(clock);
  ASSERT_EQ(second.Open(name, true, 2), Status::kSuccess);
  EXPECT_FALSE(second.HasTimedOut());
  EXPECT_EQ(second.GetValue("k"), "1");
}

TEST_F(ConfAccess, AClockThatIsSetBackDoesNotMakeTheWaitEndless) {
  CSLPConfAccess first(clock);
  ASSERT_EQ(first.Open(name, true, 2), Status::kSuccess);
  bool set_back = false;
  clock.OnSleep([&] {
    if (!set_back) {
      set_back = true;
      clock.AdvanceSeconds(-3600);
    }
  });
  CSLPConfAccess second(clock);
  EXPECT_EQ(second.Open(name, true, 2), Status::kOpenFailed);
  EXPECT_LT(clock.Sleeps().size(), 1000U);
}

TEST_F(ConfAccess, WaitsForAFileThatCannotBeOpenedAsWell) {
  CSLPConfAccess store(clock);
  EXPECT_EQ(store.Open(folder.Path("no/such/folder/slp.conf"), true, 2), Status::kOpenFailed);
  EXPECT_TRUE(store.HasTimedOut());
  EXPECT_EQ(store.Open("", true, 0), Status::kOpenFailed);
}

// Without the lock.

TEST_F(ConfAccess, WithoutALockAMissingFileIsEmptyAndIsWrittenWithItsFolders) {
  const std::string deep = folder.Path("one/two/slp.conf");
  CSLPConfAccess store(clock);
  ASSERT_EQ(store.Open(deep, false, 0), Status::kSuccess);
  EXPECT_FALSE(platform::FileExists(deep));
  store.SetValue("k", "1");
  EXPECT_EQ(store.Update(), Status::kSuccess);
  EXPECT_EQ(folder.Read("one/two/slp.conf"), "k = 1\r\n");
}

TEST_F(ConfAccess, WithoutALockAFileIsReadAndWrittenAnew) {
  folder.Write("slp.conf", "# c\nk = 1 and more\n");
  CSLPConfAccess store(clock);
  ASSERT_EQ(store.Open(name, false, 0), Status::kSuccess);
  EXPECT_EQ(store.GetValue("k"), "1 and more");
  store.SetValue("k", "2");
  EXPECT_EQ(store.Update(), Status::kSuccess);
  EXPECT_EQ(folder.Read("slp.conf"), "# c\r\nk = 2\r\n");
}

TEST_F(ConfAccess, WithoutALockAFailedWriteIsReported) {
  folder.Write("file", "");
  for (const std::string place : {"file/slp.conf", ""}) {
    CSLPConfAccess store(clock);
    ASSERT_EQ(store.Open(folder.Path(place), false, 0), Status::kSuccess);
    store.SetValue("k", "1");
    EXPECT_EQ(store.Update(), Status::kWriteFailed);
  }
}

#ifdef __linux__
TEST_F(ConfAccess, WithoutALockAFailureWhileItIsReadIsReported) {
  CSLPConfAccess store(clock);
  EXPECT_EQ(store.Open("/proc/self/mem", false, 0), Status::kLoadFailed) << "nothing lies at address 0";
}
#endif

TEST(ConfAccessStatus, HasACodeEach) {
  EXPECT_EQ(ConvertConfigFileStatus(Status::kSuccess), SResult::ERR_SUCCESS);
  EXPECT_EQ(ConvertConfigFileStatus(Status::kOpenFailed), SResult::ERR_CONF_OPEN);
  EXPECT_EQ(ConvertConfigFileStatus(Status::kLoadFailed), SResult::ERR_CONF_LOAD);
  EXPECT_EQ(ConvertConfigFileStatus(Status::kWriteFailed), SResult::ERR_CONF_WRITE);
  EXPECT_EQ(ConvertConfigFileStatus(static_cast<Status>(99)), SResult::ERR_UNKNOWN);
}

}  // namespace
}  // namespace kelsd
