#include "slpd/registry/registration_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "agent/slpd/daemon_logic.h"
#include "text/string_list.h"

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One line an entry: "LINE URL TYPE LANGUAGE LIFETIME[*] SCOPES ATTRIBUTES", the asterisk for a permanent
/// one.
std::vector<std::string> Entries(std::string_view text, std::vector<PropertyProblem>& problems) {
  std::vector<std::string> lines;
  for (const FileRegistration& entry :
       ParseRegistrationFile(text, "slp.reg", {"DEFAULT", "TAMRO"}, problems)) {
    const Registration& registration = entry.registration;
    EXPECT_EQ(registration.source, RegistrationSource::kFile);
    lines.push_back(std::to_string(entry.line) + ' ' + registration.url + ' ' + registration.service_type +
                    ' ' + registration.language + ' ' + std::to_string(registration.lifetime) +
                    (registration.permanent ? "* " : " ") + JoinStringList(registration.scopes) + ' ' +
                    registration.attributes);
  }
  return lines;
}

std::vector<std::string> Texts(const std::vector<PropertyProblem>& problems) {
  std::vector<std::string> texts;
  texts.reserve(problems.size());
  for (const PropertyProblem& problem : problems) {
    texts.push_back(problem.ToString());
  }
  return texts;
}

TEST(RegistrationFileTest, ReadsEntries) {
  const char* text =
      "# services of the house\n"
      "; and another comment\n"
      "\n"
      "service:x.tamro:http://h:1/a,b,en,65535\n"
      "scopes = tamro\n"
      "# a comment inside\n"
      "room=7,8\n"
      "x-version=\n"
      "description=a \\2c b\n"
      "Keyword\n"
      "\n"
      "  \t\n"
      "http://www.house/,de-AT, 300 ,web\r\n"
      "\r\n"
      "http://www.house/2,de,301";
  std::vector<PropertyProblem> problems;
  EXPECT_THAT(Entries(text, problems),
              ElementsAre("4 service:x.tamro:http://h:1/a,b service:x.tamro:http en 65535* tamro "
                          "(room=7,8),(x-version=),(description=a \\2c b),Keyword",
                          "13 http://www.house/ web de-AT 300 DEFAULT,TAMRO ",
                          "15 http://www.house/2 http de 301 DEFAULT,TAMRO "));
  EXPECT_THAT(Texts(problems), IsEmpty());
}

TEST(RegistrationFileTest, LinesEndInAnyWay) {
  std::vector<PropertyProblem> problems;
  EXPECT_THAT(
      Entries("\xEF\xBB\xBFservice:x://1,en,9\rroom=7\r\rservice:x://2,en,9\r\n\r\nservice:x://3,en,9\n",
              problems),
      ElementsAre("1 service:x://1 service:x en 9 DEFAULT,TAMRO (room=7)",
                  "4 service:x://2 service:x en 9 DEFAULT,TAMRO ",
                  "6 service:x://3 service:x en 9 DEFAULT,TAMRO "));
  EXPECT_THAT(Texts(problems), IsEmpty());
}

TEST(RegistrationFileTest, NothingInNothingOut) {
  std::vector<PropertyProblem> problems;
  for (const char* text : {"", "\n", "\n\n\n", "# only\n; comments"}) {
    EXPECT_THAT(Entries(text, problems), IsEmpty());
  }
  EXPECT_THAT(Texts(problems), IsEmpty());
}

struct FaultCase {
  const char* text;
  const char* problem;
};

TEST(RegistrationFileTest, AFaultTakesItsEntryOnlyAndNamesTheLine) {
  const std::string lifetime = "slp.reg:1: no lifetime from 1 to 65535 behind URL and language";
  const FaultCase cases[] = {
      {"service:x://1", lifetime.c_str()},
      {"service:x://1,en", lifetime.c_str()},
      {"service:x://1,en,0", lifetime.c_str()},
      {"service:x://1,en,65536", lifetime.c_str()},
      {"service:x://1,en,-1", lifetime.c_str()},
      {"service:x://1,en,0000001", lifetime.c_str()},
      {"service:x://1,en,9x", lifetime.c_str()},
      {"service:x,en,9", "slp.reg:1: not a service URL: \"service:x\""},
      {",en,9", "slp.reg:1: not a service URL: \"\""},
      {"service:x://1,e n,9",
       "slp.reg:1: cannot be registered: URL, language, type or attributes are malformed"},
      {"http://1,en,9,b ad",
       "slp.reg:1: cannot be registered: URL, language, type or attributes are malformed"},
      {"service:x://1,en,9\nscopes=tamro,other",
       "slp.reg:2: not all of these scopes are among net.slp.useScopes"},
      {"service:x://1,en,9\nscopes=", "slp.reg:2: not all of these scopes are among net.slp.useScopes"},
      {"service:x://1,en,9\nroom=7\na_b=1", "slp.reg:3: not an attribute: \"a_b=1\""},
      {"service:x://1,en,9\na=x=y", "slp.reg:2: not an attribute: \"a=x=y\""},
      {"service:x://1,en,9\na=1,x", "slp.reg:2: not an attribute: \"a=1,x\""},
      {"service:x://1,en,9\n(a=1)", "slp.reg:2: not an attribute: \"(a=1)\""},
      {"service:x://1,en,9\na=1),(b=2", "slp.reg:2: not an attribute: \"a=1),(b=2\""},
      {"service:x://1,en,9\na,b", "slp.reg:2: not an attribute: \"a,b\""},
      {"service:x://1,en,9\na=1\nA=2",
       "slp.reg:1: cannot be registered: URL, language, type or attributes are malformed"},
  };
  for (const FaultCase& row : cases) {
    std::vector<PropertyProblem> problems;
    const std::string text = std::string(row.text) + "\nmore=1\n\nservice:x://good,en,9\n";
    EXPECT_EQ(Entries(text, problems).size(), 1U) << row.text;
    EXPECT_THAT(Texts(problems), ElementsAre(row.problem)) << row.text;
  }
}

TEST(RegistrationFileTest, ATypeBehindAServiceUrlIsIgnoredWithAWarning) {
  std::vector<PropertyProblem> problems;
  EXPECT_THAT(Entries("service:x://1,en,9,service:y", problems),
              ElementsAre("1 service:x://1 service:x en 9 DEFAULT,TAMRO "));
  EXPECT_THAT(Texts(problems),
              ElementsAre("slp.reg:1: the type of a service: URL stands in the URL; the one behind "
                          "the lifetime is ignored"));
}

TEST(RegistrationFileTest, AUrlIsReadOnceInEachLanguage) {
  std::vector<PropertyProblem> problems;
  EXPECT_THAT(Entries("service:x://1,en,9\n\nservice:x://1,de,9\n\nservice:x://1,EN,7\na=1\n\n"
                      "service:x://2,en,9,x,0\n\nservice:X://1,en,9\n",
                      problems),
              ElementsAre("1 service:x://1 service:x en 9 DEFAULT,TAMRO ",
                          "3 service:x://1 service:x de 9 DEFAULT,TAMRO ",
                          "10 service:X://1 service:X en 9 DEFAULT,TAMRO "));
  EXPECT_THAT(Texts(problems), ElementsAre("slp.reg:5: registered twice: \"service:x://1\"",
                                           "slp.reg:8: no lifetime from 1 to 65535 behind URL and language"));
}

/// A registration file in a folder of the test's own.
class LoadRegistrationsTest : public ::testing::Test {
 protected:
  LoadRegistrationsTest() {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ =
        std::filesystem::temp_directory_path() / (std::string("slpd_registration_file_") + test->name());
    std::filesystem::create_directories(folder_);
    settings.scopes = {"DEFAULT", "TAMRO"};
    settings.registration_file = (folder_ / "slp.reg").string();
  }
  ~LoadRegistrationsTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::size_t Load(std::string_view text, Seconds now = Seconds(0)) {
    std::ofstream(settings.registration_file, std::ios::binary) << text;
    return Load(now);
  }

  std::size_t Load(Seconds now = Seconds(0)) {
    return LoadRegistrations(ReadRegistrationFile(settings, problems), registry, now, problems);
  }

  std::vector<FileRegistration> ReadEntries(std::string_view text) {
    return ParseRegistrationFile(text, "slp.reg", settings.scopes, problems);
  }

  std::vector<std::string> Urls(Seconds now = Seconds(0)) {
    registry.Expire(now);
    return FindUrls(registry, MakeQuery("service:x"), now);
  }

  std::filesystem::path folder_;
  AgentSettings settings;
  RecordedEvents events;
  Registry registry{events};
  std::vector<PropertyProblem> problems;
};

TEST_F(LoadRegistrationsTest, LoadsIntoTheRegistry) {
  EXPECT_EQ(Load("service:x://1,en,65535\nroom=7\n\nservice:x://2,en,60\n"), 2U);
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(room=7)")), ElementsAre("service:x://1"));
  EXPECT_THAT(Urls(Seconds(59)), ElementsAre("service:x://1", "service:x://2"));
  EXPECT_THAT(Urls(Seconds(60)), ElementsAre("service:x://1"));
  EXPECT_THAT(Urls(Seconds(1'000'000)), ElementsAre("service:x://1"));
  EXPECT_THAT(Texts(problems), IsEmpty());
}

TEST_F(LoadRegistrationsTest, AReloadReplacesTheFilesRegistrationsOnly) {
  registry.Register(MakeRegistration("service:x://live", "service:x"), Seconds(0));
  Load("service:x://1,en,65535\n\nservice:x://2,en,65535\n");
  EXPECT_EQ(Load("service:x://2,en,65535\n\nservice:x://3,en,65535\n"), 2U);
  EXPECT_THAT(Urls(), ElementsAre("service:x://2", "service:x://3", "service:x://live"));
  settings.registration_file.clear();
  EXPECT_EQ(Load(), 0U);
  EXPECT_THAT(Urls(), ElementsAre("service:x://live"));
  EXPECT_THAT(Texts(problems), IsEmpty());
}

TEST_F(LoadRegistrationsTest, WhatAProgramRegisteredIsLeftToIt) {
  registry.Register(MakeRegistration("service:x://1", "service:x", "(a=live)"), Seconds(0));
  EXPECT_EQ(Load("service:x://1,en,65535\na=file\n\nservice:x://2,en,9\n\nservice:x://2,en,9\n"), 1U);
  EXPECT_EQ(registry.Find("service:x://1", "en")->attributes, "(a=live)");
  EXPECT_THAT(Texts(problems),
              ElementsAre(settings.registration_file + ":6: registered twice: \"service:x://2\"",
                          settings.registration_file + ":1: left to the program that registered it: "
                                                       "\"service:x://1\""));
}

TEST_F(LoadRegistrationsTest, WhatWasLeftToAProgramComesWhenTheProgramsOneHasLeft) {
  registry.Register(MakeRegistration("service:x://1", "service:x", "(a=live)"), Seconds(0));
  Load("service:x://1,en,65535\na=file\n");
  registry.Deregister("service:x://1", {"DEFAULT", "TAMRO"}, {}, Unlimited());
  EXPECT_EQ(registry.Find("service:x://1", "en")->attributes, "(a=file)");
  EXPECT_THAT(Urls(Seconds(1'000'000)), ElementsAre("service:x://1"));
}

TEST_F(LoadRegistrationsTest, AFileThatCannotBeReadIsToldAndHoldsNothing) {
  for (const std::string& path : {settings.registration_file + ".missing", folder_.string()}) {
    settings.registration_file = path;
    problems.clear();
    const RegistrationFile file = ReadRegistrationFile(settings, problems);
    EXPECT_EQ(file.path, path);
    EXPECT_EQ(file.entries.size(), 0U);
    EXPECT_THAT(Texts(problems), ElementsAre(path + ": cannot be read"));
  }
}

TEST_F(LoadRegistrationsTest, TheFirstEntryWithoutRoomIsToldBeforeAnythingIsDropped) {
  Registry small(events, {.registrations = 3});
  small.Register(MakeRegistration("service:x://live", "service:x"), Seconds(0));
  const RegistrationFile two{"slp.reg", ReadEntries("service:x://1,en,9\n\nservice:x://2,en,9\n")};
  LoadRegistrations(two, small, Seconds(0), problems);
  CheckRoom(two, small, problems);
  EXPECT_THAT(Texts(problems), IsEmpty()) << "in its own place";
  const RegistrationFile three{
      "slp.reg", ReadEntries("service:x://3,en,9\n\nservice:x://4,en,9\n\nservice:x://5,en,9\n")};
  CheckRoom(three, small, problems);
  EXPECT_THAT(Texts(problems), ElementsAre("slp.reg:5: no room for it in the registry"));
  EXPECT_THAT(FindUrls(small, MakeQuery("service:x")),
              ElementsAre("service:x://1", "service:x://2", "service:x://live"));
}

}  // namespace
}  // namespace slp
