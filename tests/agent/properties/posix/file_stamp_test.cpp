// Stamps of files, and that a process does not read files again whose stamps say that they are as they were.
#include "properties/file_stamp.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <thread>

#include "agent/properties/temporary_files.h"
#include "properties/process_properties.h"

namespace slp {
namespace {

using std::chrono::milliseconds;
using testing::StrEq;

// As long as a file has to be left alone before its stamp counts, and a little.
constexpr milliseconds kRest{3200};

// The time of the last writing of `path` as it was at construction, given back to it whatever has been
// written.
class TimeOfWriting {
 public:
  explicit TimeOfWriting(std::string path) : path_(std::move(path)) {
    EXPECT_EQ(::stat(path_.c_str(), &status_), 0);
  }
  void Restore() const {
    const std::array<timespec, 2> times{status_.st_atim, status_.st_mtim};
    EXPECT_EQ(::utimensat(AT_FDCWD, path_.c_str(), times.data(), 0), 0);
  }

 private:
  std::string path_;
  struct stat status_ {};
};

// Whether a file has been opened since the last question.
class OpeningWatch {
 public:
  explicit OpeningWatch(const std::string& path) : descriptor_(::inotify_init1(IN_NONBLOCK)) {
    EXPECT_GE(::inotify_add_watch(descriptor_, path.c_str(), IN_OPEN), 0);
  }
  ~OpeningWatch() { ::close(descriptor_); }
  OpeningWatch(const OpeningWatch&) = delete;
  OpeningWatch& operator=(const OpeningWatch&) = delete;

  bool WasOpened() const {
    std::array<char, 4096> events{};
    return ::read(descriptor_, events.data(), events.size()) > 0;
  }

 private:
  int descriptor_;
};

TEST(FileStampTest, IsNoneOfWhatIsNoFile) {
  const TemporaryFiles folder;
  EXPECT_FALSE(StampOf(folder.Path("")));
  EXPECT_FALSE(StampOf(folder.Write("file", "") + "/below"));
  ASSERT_EQ(::mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(StampOf(folder.Path("pipe")));
  EXPECT_FALSE(IsUnchanged(StampOf(folder.Path("pipe")), StampOf(folder.Path("pipe"))));
}

TEST(FileStampTest, OneThatIsMissingHasRested) {
  const TemporaryFiles folder;
  const auto missing = StampOf(folder.Path("file"));
  EXPECT_TRUE(IsUnchanged(missing, StampOf(folder.Path("file"))));
  folder.Write("file", "");
  EXPECT_FALSE(IsUnchanged(missing, StampOf(folder.Path("file"))));
}

TEST(FileStampTest, CountsOnlyOfAFileThatHasRested) {
  const TemporaryFiles folder;
  const std::string path = folder.Write("file", "some text");
  const auto fresh = StampOf(path);
  std::this_thread::sleep_for(kRest);
  EXPECT_FALSE(IsUnchanged(fresh, StampOf(path)));
  EXPECT_TRUE(IsUnchanged(StampOf(path), StampOf(path)));
}

TEST(FileStampTest, EachChangeOfOneThatHasRestedIsSeen) {
  const TemporaryFiles folder;
  const std::string path = folder.Write("file", "some text");
  const std::string replacement = folder.Write("other", "else text");
  const TimeOfWriting time(path);
  std::this_thread::sleep_for(kRest);

  auto rested = StampOf(path);
  folder.Write("file", "same size");
  time.Restore();
  EXPECT_FALSE(IsUnchanged(rested, StampOf(path)));

  rested = StampOf(replacement);
  ASSERT_TRUE(IsUnchanged(rested, StampOf(replacement)));
  std::filesystem::rename(path, replacement);
  EXPECT_FALSE(IsUnchanged(rested, StampOf(replacement)));
  std::filesystem::remove(replacement);
  EXPECT_FALSE(IsUnchanged(rested, StampOf(replacement)));
}

// Until a file has rested, each first handle reads it.
TEST(FileStampTest, AProcessReadsAFileAgainOnlyWhenItMayHaveChanged) {
  const TemporaryFiles folder;
  const std::string path = folder.Write("conf", "net.slp.MTU=600");
  ProcessProperties store([&] { return PropertyFiles{path, folder.Path("missing"), "", false}; });
  const auto read_mtu = [&] {
    store.Acquire();
    std::string value = store.Get("net.slp.MTU");
    store.Release();
    return value;
  };
  const OpeningWatch watch(path);
  EXPECT_EQ(read_mtu(), "600");
  EXPECT_TRUE(watch.WasOpened());
  EXPECT_EQ(read_mtu(), "600");
  EXPECT_TRUE(watch.WasOpened());

  std::this_thread::sleep_for(kRest);
  EXPECT_EQ(read_mtu(), "600");
  EXPECT_TRUE(watch.WasOpened());
  EXPECT_EQ(read_mtu(), "600");
  EXPECT_FALSE(watch.WasOpened());

  const TimeOfWriting time(path);
  folder.Write("conf", "net.slp.MTU=700");
  time.Restore();
  EXPECT_EQ(read_mtu(), "700");
  folder.Write("missing", "net.slp.MTU=800");
  EXPECT_EQ(read_mtu(), "800");
}

// The application's file is named before the first load only; the others' names may change with each.
TEST(FileStampTest, AnotherFileIsReadThoughNoneHasChanged) {
  const TemporaryFiles folder;
  PropertyFiles files{folder.Write("conf", "net.slp.MTU=600"), "", "", false};
  const std::string other = folder.Write("other", "net.slp.MTU=700");
  ProcessProperties store([&] { return files; });
  std::this_thread::sleep_for(kRest);
  store.Acquire();
  store.Release();

  files.environment = other;
  store.Acquire();
  EXPECT_THAT(store.Get("net.slp.MTU"), StrEq("700"));
  store.Release();
  files.environment = "";
  store.Acquire();
  EXPECT_THAT(store.Get("net.slp.MTU"), StrEq("600"));
  store.Release();
  files.global = other;
  store.Acquire();
  EXPECT_THAT(store.Get("net.slp.MTU"), StrEq("700"));
  store.Release();
}

}  // namespace
}  // namespace slp
