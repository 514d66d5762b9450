#include <string>
#include <vector>

#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::RemoveProperty;
using scripted_slp::SetFileProperty;
using testing::ElementsAre;

using Config = CKelSLPConfig;

class PropertyReading : public CoreFixture {};

TEST_F(PropertyReading, ReadsTheRawText) {
  SetFileProperty("net.slp.anything", "text");
  std::string value;
  EXPECT_THAT(CKelSLPImpl::GetSLPProperty(value, "net.slp.anything"), SameResult(kSuccess));
  EXPECT_EQ(value, "text");
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPGetProperty(net.slp.anything)"));
}

TEST_F(PropertyReading, TakesAnEmptyTextForAValue) {
  SetFileProperty("net.slp.anything", "");
  std::string value = "before";
  EXPECT_THAT(CKelSLPImpl::GetSLPProperty(value, "net.slp.anything"), SameResult(kSuccess));
  EXPECT_EQ(value, "");
}

TEST_F(PropertyReading, TellsThatAPropertyIsUnknown) {
  std::string value = "before";
  EXPECT_THAT(CKelSLPImpl::GetSLPProperty(value, "net.slp.anything"),
              SameResult(SResult(SResult::ERR_PROPERTY_GET, "Property name: net.slp.anything",
                                 "kelsd::CKelSLPImpl::GetSLPProperty")));
  EXPECT_EQ(value, "before");
}

/// What each typed reader says of an unknown property.
SResult Unknown(const std::string& reader, const std::string& key) {
  return {SResult::ERR_PROPERTY_GET, "Property name: " + key,
          "kelsd::CKelSLPImpl::" + reader + " kelsd::CKelSLPImpl::GetSLPProperty"};
}

TEST_F(PropertyReading, ReadsText) {
  SetFileProperty("net.slp.broadcastAddr", " as it is ");
  std::string value;
  EXPECT_THAT(CKelSLPImpl::GetStringProperty(value, Config::PROP_BROADCASTADDR), SameResult(kSuccess));
  EXPECT_EQ(value, " as it is ");
  RemoveProperty("net.slp.broadcastAddr");
  EXPECT_THAT(CKelSLPImpl::GetStringProperty(value, Config::PROP_BROADCASTADDR),
              SameResult(Unknown("GetStringProperty", "net.slp.broadcastAddr")));
  EXPECT_EQ(value, " as it is ");
}

TEST_F(PropertyReading, ReadsBooleans) {
  struct Row {
    std::string text;
    bool value;
  };
  const std::vector<Row> rows = {{"yes", true}, {"True", true}, {"1", true}, {"Y", true},     {"t", true},
                                 {"no", false}, {"0", false},   {"", false}, {" true", false}};
  for (const Row& row : rows) {
    SetFileProperty("net.slp.useDHCP", row.text);
    bool value = !row.value;
    EXPECT_THAT(CKelSLPImpl::GetBoolProperty(value, Config::PROP_USEDHCP), SameResult(kSuccess));
    EXPECT_EQ(value, row.value) << row.text;
  }
  RemoveProperty("net.slp.useDHCP");
  bool value = true;
  EXPECT_THAT(CKelSLPImpl::GetBoolProperty(value, Config::PROP_USEDHCP),
              SameResult(Unknown("GetBoolProperty", "net.slp.useDHCP")));
  EXPECT_TRUE(value);
}

TEST_F(PropertyReading, ReadsNumbers) {
  struct Row {
    std::string text;
    int value;
  };
  const std::vector<Row> rows = {
      {"42", 42}, {" 42", 42}, {"-1", -1}, {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1}};
  for (const Row& row : rows) {
    SetFileProperty("net.slp.MTU", row.text);
    int value = 7;
    EXPECT_THAT(CKelSLPImpl::GetNumericProperty(value, Config::PROP_MTU), SameResult(kSuccess));
    EXPECT_EQ(value, row.value) << row.text;
  }
  RemoveProperty("net.slp.MTU");
  int value = 7;
  EXPECT_THAT(CKelSLPImpl::GetNumericProperty(value, Config::PROP_MTU),
              SameResult(Unknown("GetNumericProperty", "net.slp.MTU")));
  EXPECT_EQ(value, 7);
}

struct BadNumber {
  std::string text;
  std::string message;
};

const std::vector<BadNumber>& BadNumbers() {
  static const std::vector<BadNumber> rows = {
      {"2147483648", "Numeric value is too large (overflow, 2147483648, int)."},
      {"-2147483649", "Numeric value is too small (underflow, -2147483649, int)."},
      {"42x", "StringConvert(42x,long double,1)."},
      {"abc", "StringConvert(abc,long double,1)."},
      {"1.5", "StringConvert(1.5,int,1)."},
  };
  return rows;
}

TEST_F(PropertyReading, RefusesBadNumbers) {
  for (const BadNumber& row : BadNumbers()) {
    SetFileProperty("net.slp.MTU", row.text);
    int value = 7;
    EXPECT_THAT(CKelSLPImpl::GetNumericProperty(value, Config::PROP_MTU),
                SameResult(SResult(SResult::ERR_PROPERTY_PARSE, "Property: MTU. " + row.message,
                                   "kelsd::CKelSLPImpl::GetNumericProperty "
                                   "kelsd::CKelSLPImpl::ParseNumericProperty")));
    EXPECT_EQ(value, 7);
  }
}

TEST_F(PropertyReading, ParsesNumbersByThemselves) {
  int value = 7;
  EXPECT_THAT(CKelSLPImpl::ParseNumericProperty(value, "12"), SameResult(kSuccess));
  EXPECT_EQ(value, 12);
  for (const BadNumber& row : BadNumbers()) {
    EXPECT_THAT(CKelSLPImpl::ParseNumericProperty(value, row.text),
                SameResult(SResult(SResult::ERR_INVALID_PARAMETER, row.message,
                                   "kelsd::CKelSLPImpl::ParseNumericProperty")));
  }
  EXPECT_EQ(value, 12);
}

TEST_F(PropertyReading, ReadsLists) {
  struct Row {
    std::string text;
    std::vector<std::string> value;
  };
  const std::vector<Row> rows = {{"a, b,,c", {"a", " b", "c"}}, {"", {}}, {",", {}}, {"one", {"one"}}};
  for (const Row& row : rows) {
    SetFileProperty("net.slp.interfaces", row.text);
    std::vector<std::string> value = {"before"};
    EXPECT_THAT(CKelSLPImpl::GetStringListProperty(value, Config::PROP_INTERFACES), SameResult(kSuccess));
    EXPECT_EQ(value, row.value);
  }
  RemoveProperty("net.slp.interfaces");
  std::vector<std::string> value = {"before"};
  EXPECT_THAT(CKelSLPImpl::GetStringListProperty(value, Config::PROP_INTERFACES),
              SameResult(Unknown("GetStringListProperty", "net.slp.interfaces")));
  EXPECT_THAT(value, ElementsAre("before"));
}

TEST_F(PropertyReading, ReadsTimeouts) {
  struct Row {
    std::string text;
    std::vector<int> value;
  };
  const std::vector<Row> rows = {
      {"500,750,1000,0,2000", {500, 750, 1000}},
      {"1,2,3,4,5,6,7", {1, 2, 3, 4, 5, 6}},
      {"1,2,3,4,5,6,x", {1, 2, 3, 4, 5, 6}},
      {"500, ,750", {500}},
      {"500, ,x", {500}},
      {"500,0,x", {500}},
      {"500,,750", {500, 750}},
      {" 500 , 750 ", {500, 750}},
      {"-5", {-5}},
      {"0", {}},
      {"", {}},
  };
  for (const Row& row : rows) {
    SetFileProperty("net.slp.unicastTimeouts", row.text);
    std::vector<int> value = {7};
    EXPECT_THAT(CKelSLPImpl::GetTimeoutList(value, Config::PROP_UNICASTTIMEOUTS), SameResult(kSuccess));
    EXPECT_EQ(value, row.value) << row.text;
  }
  RemoveProperty("net.slp.unicastTimeouts");
  std::vector<int> value = {7};
  EXPECT_THAT(CKelSLPImpl::GetTimeoutList(value, Config::PROP_UNICASTTIMEOUTS),
              SameResult(Unknown("GetTimeoutList", "net.slp.unicastTimeouts")));
  EXPECT_THAT(value, ElementsAre(7));
}

TEST_F(PropertyReading, RefusesBadTimeouts) {
  for (const BadNumber& row : BadNumbers()) {
    for (const std::string& text : {row.text, "500, " + row.text + " ,750"}) {
      SetFileProperty("net.slp.unicastTimeouts", text);
      std::vector<int> value = {7};
      EXPECT_THAT(
          CKelSLPImpl::GetTimeoutList(value, Config::PROP_UNICASTTIMEOUTS),
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE, "Property: Unicast Timeouts. " + row.message,
                             "kelsd::CKelSLPImpl::GetTimeoutList "
                             "kelsd::CKelSLPImpl::ParseTimeoutsList")));
      EXPECT_THAT(CKelSLPImpl::ParseTimeoutsList(value, text),
                  SameResult(SResult(SResult::ERR_INVALID_PARAMETER, row.message,
                                     "kelsd::CKelSLPImpl::ParseTimeoutsList")));
      EXPECT_THAT(value, ElementsAre(7));
    }
  }
}

TEST_F(PropertyReading, SetsAPropertyByItsKey) {
  CKelSLPImpl::SetSLPProperty(Config::PROP_USESCOPES, "TAMRO,LAB");
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPSetProperty(net.slp.useScopes,TAMRO,LAB)"));
  EXPECT_EQ(scripted_slp::Property("net.slp.useScopes"), "TAMRO,LAB");
}

}  // namespace
}  // namespace kelsd
