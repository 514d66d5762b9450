#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

constexpr Instant kNow{0};

FileRegistration Entry(int line, const std::string& url, const std::string& language = "en") {
  FileRegistration entry{line, MakeRegistration(url, "service:x")};
  entry.registration.source = RegistrationSource::kFile;
  entry.registration.language = language;
  return entry;
}

/// The line of the first entry that may find no room, 0 when all do; then they do find it.
int WithoutRoom(Registry& registry, const std::vector<FileRegistration>& entries) {
  const FileRegistration* const entry = registry.FindWithoutRoom(entries);
  if (entry != nullptr) {
    return entry->line;
  }
  registry.DropFileRegistrations();
  for (const FileRegistration& each : entries) {
    EXPECT_EQ(registry.Register(each.registration, kNow), Error::kOk) << each.registration.url;
  }
  return 0;
}

TEST(RegistryFileTest, SoManyRegistrationsFindRoom) {
  RecordedEvents events;
  Registry registry(events, {.registrations = 3});
  registry.Register(MakeRegistration("service:x://live", "service:x"), kNow);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, "service:x://1"), Entry(2, "service:x://2")}), 0);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, "service:x://3"), Entry(2, "service:x://4")}), 0);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, "service:x://5"), Entry(2, "service:x://6"),
                                   Entry(3, "service:x://7"), Entry(4, "service:x://8")}),
            3);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, "service:x://5"), Entry(2, "service:x://live"),
                                   Entry(3, "service:x://6"), Entry(4, "service:x://7")}),
            4)
      << "a program's covers it";
  EXPECT_EQ(registry.size(), 3U);
  EXPECT_EQ(WithoutRoom(registry, {}), 0);
  EXPECT_EQ(registry.size(), 1U);
}

TEST(RegistryFileTest, SoManyBytesFindRoom) {
  RecordedEvents events;
  Registry registry(events, {.bytes = 64 * 1024});
  std::vector<FileRegistration> entries;
  int line = 0;
  while (registry.FindWithoutRoom(entries) == nullptr && line < 1000) {
    ++line;
    entries.push_back(Entry(line, "service:x://" + std::to_string(line)));
  }
  EXPECT_GT(line, 10);
  EXPECT_EQ(WithoutRoom(registry, entries), line);
  entries.pop_back();
  EXPECT_EQ(WithoutRoom(registry, entries), 0);
  entries.resize(entries.size() * 2 / 3);
  EXPECT_EQ(WithoutRoom(registry, entries), 0);
  EXPECT_EQ(WithoutRoom(registry, entries), 0) << "again, in its own place";
  FileRegistration large = Entry(line, "service:x://large");
  large.registration.attributes = "(a=" + std::string(60'000, 'x') + ")";
  entries.push_back(large);
  EXPECT_EQ(WithoutRoom(registry, entries), line);
}

TEST(RegistryFileTest, SoManyLanguagesOfAUrlFindRoom) {
  RecordedEvents events;
  Registry registry(events, {.languages_per_url = 3});
  const std::string url = "service:x://1";
  registry.Register(Entry(0, url, "fr").registration, kNow);
  Registration live = MakeRegistration(url, "service:x");
  live.language = "it";
  registry.Register(live, kNow);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, url, "en"), Entry(2, url, "de"), Entry(3, "service:x://2")}), 0);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, url, "en"), Entry(2, url, "IT"), Entry(3, url, "fr")}), 0);
  EXPECT_EQ(WithoutRoom(registry, {Entry(1, url, "en"), Entry(2, url, "de"), Entry(3, url, "fr")}), 3);
}

}  // namespace
}  // namespace slp
