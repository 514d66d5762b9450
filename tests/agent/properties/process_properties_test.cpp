#include "properties/process_properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/properties/temporary_files.h"

namespace slp {
namespace {

using testing::IsNull;
using testing::StrEq;

class ProcessPropertiesTest : public testing::Test {
 protected:
  void WriteGlobal(std::string_view text) { files_.global = folder_.Write("global", text); }

  TemporaryFiles folder_;
  PropertyFiles files_;
  int loads_ = 0;
  ProcessProperties store_{[this] {
    ++loads_;
    return files_;
  }};
};

TEST_F(ProcessPropertiesTest, FirstHandleLoadsAndLastOneDrops) {
  WriteGlobal("net.slp.MTU=600");
  store_.Acquire();
  EXPECT_EQ(loads_, 1);
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  EXPECT_THAT(store_.Get("net.slp.OpenSLPConfigFile"), StrEq(files_.global));

  WriteGlobal("net.slp.MTU=700");
  store_.Acquire();
  store_.Release();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  store_.Release();
  EXPECT_EQ(loads_, 1);

  store_.Acquire();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("700"));
  EXPECT_EQ(loads_, 2);
  store_.Release();

  files_.global = folder_.Path("missing");
  store_.Acquire();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("1400"));
  EXPECT_THAT(store_.Get("net.slp.OpenSLPConfigFile"), IsNull());
  EXPECT_EQ(loads_, 3);
}

TEST_F(ProcessPropertiesTest, ReadingWithoutAHandleLoadsToo) {
  WriteGlobal("net.slp.MTU=600");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  WriteGlobal("net.slp.MTU=700");
  store_.Acquire();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  store_.Release();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("700"));
  EXPECT_EQ(loads_, 2);
}

TEST_F(ProcessPropertiesTest, SettingWithoutAHandleHoldsUntilTheLastOneIsReleased) {
  store_.Set("net.slp.port", "4270");
  EXPECT_EQ(loads_, 1);
  store_.Acquire();
  EXPECT_THAT(store_.Get("net.slp.port"), StrEq("4270"));
  store_.Release();
  EXPECT_THAT(store_.Get("net.slp.port"), StrEq("427"));
}

TEST_F(ProcessPropertiesTest, EverySetCounts) {
  WriteGlobal("net.slp.MTU=600");
  store_.Acquire();
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  store_.Set("net.slp.MTU", "800");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("800"));
  store_.Set("net.slp.MTU", "900");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("900"));
  store_.Set("own.key", "x");
  EXPECT_THAT(store_.Get("own.key"), StrEq("x"));
}

TEST_F(ProcessPropertiesTest, AValueThatCannotBeUsedIsReadAsItStandsAndNotUsed) {
  WriteGlobal("net.slp.MTU=abc");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("abc"));
  EXPECT_EQ(store_.Snapshot()->GetInt("net.slp.MTU"), 1400);
  EXPECT_EQ(store_.Snapshot()->GetString("net.slp.MTU"), "1400");
  store_.Set("net.slp.MTU", "800");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("800"));
  EXPECT_EQ(store_.Snapshot()->GetInt("net.slp.MTU"), 800);
  store_.Set("net.slp.MTU", "");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("abc"));
}

TEST_F(ProcessPropertiesTest, AnEmptyTextTakesBackWhatTheProcessSet) {
  WriteGlobal("net.slp.MTU=600");
  store_.Set("net.slp.MTU", "800");
  store_.Set("net.slp.port", "4270");
  store_.Set("own.key", "x");
  store_.Set("net.slp.MTU", "");
  store_.Set("net.slp.port", "");
  store_.Set("own.key", "");
  store_.Set("net.slp.locale", "");
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("600"));
  EXPECT_THAT(store_.Get("net.slp.port"), StrEq("427"));
  EXPECT_THAT(store_.Get("own.key"), IsNull());
  EXPECT_THAT(store_.Get("net.slp.locale"), StrEq("en"));
}

TEST_F(ProcessPropertiesTest, ReadOnlyPropertiesCannotBeSet) {
  WriteGlobal("");
  for (const char* key : {"net.slp.OpenSLPVersion", "net.slp.OpenSLPConfigFile", "net.slp.EnvConfigFile",
                          "net.slp.AppConfigFile"}) {
    store_.Set(key, "x");
  }
  EXPECT_THAT(store_.Get("net.slp.OpenSLPVersion"), StrEq("2.0.0"));
  EXPECT_THAT(store_.Get("net.slp.OpenSLPConfigFile"), StrEq(files_.global));
  EXPECT_THAT(store_.Get("net.slp.EnvConfigFile"), IsNull());
  EXPECT_THAT(store_.Get("net.slp.AppConfigFile"), IsNull());
}

TEST_F(ProcessPropertiesTest, UnknownKeysReadAsNull) {
  EXPECT_THAT(store_.Get("net.slp.mtu"), IsNull());
  EXPECT_THAT(store_.Get(""), IsNull());
}

TEST_F(ProcessPropertiesTest, AnEmptyDefaultIsNotNull) {
  EXPECT_THAT(store_.Get("net.slp.interfaces"), StrEq(""));
}

TEST_F(ProcessPropertiesTest, TextsOutliveWhatReplacesThem) {
  store_.Acquire();
  const char* const first = store_.Get("net.slp.port");
  store_.Set("net.slp.port", "4270");
  const char* const second = store_.Get("net.slp.port");
  store_.Set("net.slp.port", "");
  store_.Release();
  store_.Acquire();
  EXPECT_THAT(first, StrEq("427"));
  EXPECT_THAT(second, StrEq("4270"));
  EXPECT_EQ(store_.Get("net.slp.port"), first) << "equal texts are kept once";
}

TEST_F(ProcessPropertiesTest, ApplicationFileIsNamedBeforeTheFirstLoadOnly) {
  WriteGlobal("net.slp.MTU=600\nnet.slp.port=1001");
  const std::string path = folder_.Write("application", "net.slp.MTU=700");
  EXPECT_TRUE(store_.SetApplicationFile("replaced"));
  EXPECT_TRUE(store_.SetApplicationFile(path));
  EXPECT_EQ(loads_, 0);
  store_.Acquire();
  EXPECT_FALSE(store_.SetApplicationFile("too late"));
  EXPECT_THAT(store_.Get("net.slp.MTU"), StrEq("700"));
  EXPECT_THAT(store_.Get("net.slp.port"), StrEq("1001"));
  EXPECT_THAT(store_.Get("net.slp.AppConfigFile"), StrEq(path));
  store_.Release();
  EXPECT_FALSE(store_.SetApplicationFile("too late"));
  EXPECT_THAT(store_.Get("net.slp.AppConfigFile"), StrEq(path)) << "later loads read it too";
}

TEST_F(ProcessPropertiesTest, AReleaseTooManyDoesNothing) {
  store_.Set("net.slp.port", "4270");
  store_.Release();
  EXPECT_THAT(store_.Get("net.slp.port"), StrEq("4270"));
}

TEST_F(ProcessPropertiesTest, SnapshotHoldsWhatHoldsNow) {
  WriteGlobal("net.slp.MTU=600\nnet.slp.port=1001");
  store_.Set("net.slp.MTU", "700");
  const Properties snapshot = *store_.Snapshot();
  store_.Set("net.slp.MTU", "800");
  EXPECT_EQ(snapshot.GetInt("net.slp.MTU"), 700);
  EXPECT_EQ(snapshot.GetInt("net.slp.port"), 1001);
  EXPECT_EQ(snapshot.GetInt("net.slp.multicastTTL"), 255);
  EXPECT_EQ(store_.Snapshot()->GetInt("net.slp.MTU"), 800);
}

TEST_F(ProcessPropertiesTest, SnapshotIsTheSameUntilSomethingChanges) {
  store_.Acquire();
  const auto first = store_.Snapshot();
  EXPECT_EQ(store_.Snapshot(), first);
  store_.Set("net.slp.MTU", "800");
  const auto second = store_.Snapshot();
  EXPECT_NE(second, first);
  store_.Set("net.slp.OpenSLPVersion", "9");  // read-only
  EXPECT_EQ(store_.Snapshot(), second);
  store_.Set("net.slp.MTU", "");
  const auto third = store_.Snapshot();
  EXPECT_NE(third, second);
  EXPECT_EQ(third->values(), first->values());
}

// For a program that opens a handle for each search.
TEST_F(ProcessPropertiesTest, IsTheSameAgainWhenTheFilesSayTheSame) {
  WriteGlobal("net.slp.MTU=600");
  store_.Acquire();
  const auto first = store_.Snapshot();
  store_.Set("net.slp.port", "4270");
  store_.Release();
  EXPECT_EQ(store_.Snapshot(), first);

  store_.Acquire();
  store_.Release();
  WriteGlobal("net.slp.MTU=700");
  EXPECT_EQ(store_.Snapshot()->GetInt("net.slp.MTU"), 700);

  store_.Acquire();
  store_.Release();
  files_.environment = files_.global;
  EXPECT_THAT(store_.Get("net.slp.EnvConfigFile"), StrEq(files_.environment));

  store_.Acquire();
  store_.Release();
  files_ = {};
  EXPECT_EQ(store_.Snapshot()->GetInt("net.slp.MTU"), 1400);
}

TEST(ProcessPropertiesInstanceTest, IsOne) {
  EXPECT_EQ(&ProcessProperties::Instance(), &ProcessProperties::Instance());
  EXPECT_THAT(ProcessProperties::Instance().Get("net.slp.OpenSLPVersion"), StrEq("2.0.0"));
}

}  // namespace
}  // namespace slp
