#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "support/same_result.h"
#include "unit/config/service_values.h"

namespace kelsd {
namespace {

/// A number with a lowest value.
struct Number {
  std::string name;
  std::string sentence;
  int minimum;
  int initial;
  SResult (*validate)(const int&);
  SResult (CKelSLPServiceConfig::*set)(const int&);
  int (CKelSLPServiceConfig::*get)() const;
};

TEST(ServiceConfigFields, NumbersHaveALowestValue) {
  const Number numbers[] = {
      {"DAHeartBeat", "Directory agent heart beat is too small (must be at least 2000): ", 2000, 10800,
       &CKelSLPServiceConfig::ValidateDAHeartBeat, &CKelSLPServiceConfig::SetDAHeartBeat,
       &CKelSLPServiceConfig::GetDAHeartBeat},
      {"StaleDACheckPeriod", "Stale directory agent check period is too small (must be at least 0): ", 0, 0,
       &CKelSLPServiceConfig::ValidateStaleDACheckPeriod, &CKelSLPServiceConfig::SetStaleDACheckPeriod,
       &CKelSLPServiceConfig::GetStaleDACheckPeriod},
  };
  for (const Number& number : numbers) {
    SCOPED_TRACE(number.name);
    const std::string validate_trail = "kelsd::CKelSLPServiceConfig::Validate" + number.name;
    const std::string set_trail = "kelsd::CKelSLPServiceConfig::Set" + number.name + " " + validate_trail;
    for (const int value : {number.minimum - 1, std::numeric_limits<int>::min()}) {
      CKelSLPServiceConfig config;
      const std::string detail = number.sentence + std::to_string(value) + ".";
      EXPECT_THAT(number.validate(value), SameResult(Refusal(detail, validate_trail)));
      EXPECT_THAT((config.*number.set)(value), SameResult(Refusal(detail, set_trail)));
      EXPECT_EQ((config.*number.get)(), number.initial);
    }
    for (const int value : {number.minimum, number.minimum + 1, std::numeric_limits<int>::max()}) {
      CKelSLPServiceConfig config;
      EXPECT_THAT(number.validate(value), SameResult(kSuccess));
      EXPECT_THAT((config.*number.set)(value), SameResult(kSuccess));
      EXPECT_EQ((config.*number.get)(), value);
    }
  }
}

TEST(ServiceConfigFields, EachFlagSetterChangesItsOwnFlag) {
  for (const ServiceFlag& flag : ServiceFlags()) {
    if (flag.set == nullptr) {
      continue;
    }
    SCOPED_TRACE(flag.name);
    ServiceValues values = ServiceValues::Cleared();
    std::vector<SResult> problems;
    auto config = Make<CKelSLPServiceConfig>(values.Arguments(), problems);
    const bool initial = values.*flag.value;
    (config.*flag.set)(!initial);
    values.*flag.value = !initial;
    EXPECT_EQ(Read(config), values.Arguments());
    (config.*flag.set)(initial);
    EXPECT_EQ(Read(config), ServiceValues::Cleared().Arguments());
  }
}

struct ListRow {
  std::vector<std::string> given;
  std::vector<std::string> stored;
};

TEST(ServiceConfigFields, ScopesAreCleanedInUpperCase) {
  const ListRow rows[] = {
      {{}, {"DEFAULT"}},
      {{" lab "}, {"LAB"}},
      {{" "}, {}},
      {{"", "\t"}, {}},
      {{"tamro", "lab", "LAB", "TAMRO"}, {"TAMRO", "LAB"}},
      {{"lab", "lab"}, {"LAB", "LAB"}},
  };
  for (const ListRow& row : rows) {
    CKelSLPServiceConfig config;
    config.SetUseScopes({"OLD"});
    config.SetUseScopes(row.given);
    EXPECT_EQ(config.GetUseScopes(), row.stored);
  }
}

TEST(ServiceConfigFields, DAAddressesAreCleanedInUpperCase) {
  const ListRow rows[] = {
      {{}, {}},
      {{" fe80::1 ", "10.0.0.2", "10.0.0.2", ""}, {"FE80::1", "10.0.0.2"}},
      {{"b.local", "A.LOCAL"}, {"B.LOCAL", "A.LOCAL"}},
  };
  for (const ListRow& row : rows) {
    CKelSLPServiceConfig config;
    config.SetDAAddresses({"OLD"});
    config.SetDAAddresses(row.given);
    EXPECT_EQ(config.GetDAAddresses(), row.stored);
  }
}

TEST(ServiceConfigFields, IndexedAttributesAreCleanedInLowerCase) {
  const ListRow rows[] = {
      {{}, {}},
      {{"X-Version", "x-version"}, {"x-version"}},
      {{"x-a", "x-a"}, {"x-a"}},
      {{"X-A", "X-A"}, {"x-a", "x-a"}},
      {{" X-B", " ", "x-a "}, {"x-b", "x-a"}},
  };
  for (const ListRow& row : rows) {
    CKelSLPServiceConfig config;
    config.SetIndexedAttributes({"old"});
    config.SetIndexedAttributes(row.given);
    EXPECT_EQ(config.GetIndexedAttributes(), row.stored);
  }
}

TEST(ServiceConfigFields, GettersReturnCopies) {
  std::vector<SResult> problems;
  const auto config = Make<CKelSLPServiceConfig>(ServiceValues().Arguments(), problems);
  config.GetUseScopes().clear();
  config.GetDAAddresses().clear();
  config.GetIndexedAttributes().clear();
  EXPECT_EQ(Read(config), ServiceValues().Arguments());
}

}  // namespace
}  // namespace kelsd
