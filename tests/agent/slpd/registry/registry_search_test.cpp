#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"

namespace slp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Seconds kStart{1000};

class RegistrySearchTest : public ::testing::Test {
 protected:
  void Add(const std::string& url, const std::string& type, const std::string& attributes = {},
           std::vector<std::string> scopes = {"DEFAULT"}, const std::string& language = "en") {
    Registration registration = MakeRegistration(url, type, attributes);
    registration.scopes = std::move(scopes);
    registration.language = language;
    ASSERT_EQ(registry.Register(registration, kStart), Error::kOk) << url;
  }

  Error ErrorOf(const ServiceQuery& query) {
    return registry.FindServices(query, kStart, Unlimited(),
                                 [](std::string_view, std::uint16_t) { return true; });
  }

  std::string AttributesOfUrl(const std::string& url, std::string_view language,
                              const std::vector<std::string>& tags = {}) {
    const Result<AttributeAnswer> answer =
        registry.FindAttributesOfUrl(url, {"DEFAULT"}, language, tags, Unlimited());
    return answer ? answer->attributes : "error " + std::to_string(static_cast<int>(answer.error()));
  }

  std::string AttributesOfType(std::string_view type, std::string_view language,
                               const std::vector<std::string>& tags = {}) {
    const Result<ServiceType> parsed = ParseServiceType(type);
    EXPECT_TRUE(parsed);
    const Result<AttributeAnswer> answer =
        registry.FindAttributesOfType(*parsed, {"DEFAULT"}, language, tags, 0xFFFF, Unlimited());
    return answer ? answer->attributes : "error " + std::to_string(static_cast<int>(answer.error()));
  }

  /// The registrations of RFC 2608 section 10.5.
  void AddPrinters() {
    const std::string igore = "service:printer:lpr://igore.wco.ftp.com/draft";
    Add(igore, "service:printer:lpr",
        "(Name=Igore),(Description=For developers only),(Protocol=LPR),(location-description=12th floor),"
        "(Operator=James Dornan \\3cdornan@monster\\3e),(media-size=na-letter),(resolution=res-600),x-OK");
    Add(igore, "service:printer:lpr",
        "(Name=Igore),(Description=Nur fuer Entwickler),(Protocol=LPR),(location-description=13te Etage),"
        "(Operator=James Dornan \\3cdornan@monster\\3e),(media-size=na-letter),(resolution=res-600),x-OK",
        {"DEFAULT"}, "de");
    Add("service:printer:http://not.wco.ftp.com/cgi-bin/pub-prn", "service:printer:http",
        "(Name=Not),(Description=Experimental IPP printer),(Protocol=http),(location-description=QA bench),"
        "(media-size=na-letter),(resolution=other),x-BUSY");
  }

  RecordedEvents events;
  Registry registry{events};
};

struct TypeCase {
  const char* requested;
  std::vector<std::string> urls;
};

TEST_F(RegistrySearchTest, AnAbstractTypeFindsItsConcreteTypesAndNoOthers) {
  Add("service:p://1", "service:p");
  Add("service:p:lpr://2", "service:p:lpr");
  Add("service:p:http://3", "service:P:http");
  Add("service:p.na:http://4", "service:p.na:http");
  Add("service:printer://5", "service:printer");
  Add("http://6", "http");
  Add("service:p.na:://7", "service:p.na:");
  const TypeCase cases[] = {
      {"service:p", {"service:p://1", "service:p:http://3", "service:p:lpr://2"}},
      {"service:p:http", {"service:p:http://3"}},
      {"SERVICE:P:HTTP", {"service:p:http://3"}},
      {"service:p:ftp", {}},
      {"service:p.na", {"service:p.na:://7", "service:p.na:http://4"}},
      {"service:p.na:", {"service:p.na:://7"}},
      {"service:printer", {"service:printer://5"}},
      {"service:print", {}},
      {"http", {"http://6"}},
      {"service:http", {}},
      {"p", {}},
  };
  for (const TypeCase& row : cases) {
    EXPECT_EQ(FindUrls(registry, MakeQuery(row.requested)), row.urls) << row.requested;
  }
}

TEST_F(RegistrySearchTest, OneScopeInCommonIsEnough) {
  Add("service:x://1", "service:x", "", {"DEFAULT"});
  Add("service:x://2", "service:x", "", {"tamro"});
  Add("service:x://3", "service:x", "", {"Tamro", "Default"});
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "", {"default"})),
              ElementsAre("service:x://1", "service:x://3"));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "", {"TAMRO"})),
              ElementsAre("service:x://2", "service:x://3"));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "", {"TAMRO", "DEFAULT"})),
              ElementsAre("service:x://1", "service:x://2", "service:x://3"));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "", {"other"})), IsEmpty());
}

TEST_F(RegistrySearchTest, TheLanguageCountsWithAPredicateOnly) {
  Add("service:x://1", "service:x", "(a=1)", {"DEFAULT"}, "en");
  Add("service:x://1", "service:x", "(a=1)", {"DEFAULT"}, "de");
  Add("service:x://2", "service:x", "(a=1)", {"DEFAULT"}, "de-AT");
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "", {"DEFAULT"}, "fr")),
              ElementsAre("service:x://1", "service:x://2"));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(a=1)", {"DEFAULT"}, "en-GB")),
              ElementsAre("service:x://1"));
  EXPECT_EQ(ErrorOf(MakeQuery("service:x", "(a=1)", {"DEFAULT"}, "fr")), Error::kLanguageNotSupported);
  EXPECT_EQ(ErrorOf(MakeQuery("service:x", "(a=1)", {"TAMRO"}, "fr")), Error::kOk);
  EXPECT_EQ(ErrorOf(MakeQuery("service:y", "(a=1)", {"DEFAULT"}, "fr")), Error::kOk);
}

TEST_F(RegistrySearchTest, AUrlIsShownOnceHoweverManyLanguagesMatch) {
  Add("service:x://1", "service:x", "(a=1)", {"DEFAULT"}, "en");
  Add("service:x://1", "service:x", "(a=1)", {"DEFAULT"}, "en-GB");
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x")), ElementsAre("service:x://1"));
  EXPECT_THAT(FindUrls(registry, MakeQuery("service:x", "(a=1)")), ElementsAre("service:x://1"));
}

struct PredicateCase {
  const char* attributes;
  const char* predicate;
  bool matches;
};

TEST_F(RegistrySearchTest, PredicatesMatchWhateverTheIndexSays) {
  const PredicateCase cases[] = {
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", "(x-ip-addresses=*,10.0.0.2,*)", false},
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2\\2C10.0.0.3)", "(x-ip-addresses=*,10.0.0.2,*)", true},
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", "(x-ip-addresses=*,10.0.0.2)", true},
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", "(x-ip-addresses=10.0.0.1,10.0.0.2)", true},
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", "(x-ip-addresses=10.0.0.1\\2c10.0.0.2)", true},
      {"(x-ip-addresses=10.0.0.1\\2c10.0.0.2)", "(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", true},
      {"(x-ip-addresses=10.0.0.1\\2C10.0.0.2)", "(x-ip-addresses=10.0.0.1\\2C*)", true},
      {"(x-ip-addresses=10.0.0.1,10.0.0.2)", "(x-ip-addresses=10.0.0.2)", true},
      {"(x-version=)", "(x-version=)", true},
      {"(x-version=)", "(x-version=*)", true},
      {"(x-version=1)", "(x-version=)", false},
      {"(name=Some   String)", "(NAME=  some string )", true},
      {"(a=1)", "(a=01)", true},
      {"(a=1)", "(a=1x)", false},
      {"(a=TRUE)", "(a=true)", true},
      {"(a=\\FF\\01\\02)", "(a=\\ff\\01\\02)", true},
      {"(a=1,2,3)", "(a=3)", true},
      {"key", "(key=*)", true},
      {"(a=34foo)", "(a=34*)", true},
      {"(a=3432)", "(a=34*)", false},
      {"(a=33)", "(|(a=33)(b=foo))", true},
      {"(y=0,1)", "(!(y=0))", true},
  };
  for (const PredicateCase& row : cases) {
    Add("service:x://1", "service:x", row.attributes);
    EXPECT_EQ(!FindUrls(registry, MakeQuery("service:x", row.predicate)).empty(), row.matches)
        << row.attributes << ' ' << row.predicate;
  }
}

TEST_F(RegistrySearchTest, VisitingStopsWhenItIsToldTo) {
  Add("service:x://1", "service:x");
  Add("service:x://2", "service:x");
  int visits = 0;
  registry.FindServices(MakeQuery("service:x"), kStart, Unlimited(),
                        [&visits](std::string_view, std::uint16_t) {
                          ++visits;
                          return false;
                        });
  EXPECT_EQ(visits, 1);
}

TEST_F(RegistrySearchTest, AttributesOfAUrlInItsLanguage) {
  AddPrinters();
  const std::string igore = "service:printer:lpr://igore.wco.ftp.com/draft";
  EXPECT_EQ(AttributesOfUrl(igore, "de", {"resolution", "loc*"}),
            "(location-description=13te Etage),(resolution=res-600)");
  EXPECT_EQ(AttributesOfUrl(igore, "en-US", {"loc*"}), "(location-description=12th floor)");
  EXPECT_EQ(AttributesOfUrl(igore, "fr"), "error 1");
  EXPECT_EQ(AttributesOfUrl("service:printer:lpr://other", "en"), "");
}

TEST_F(RegistrySearchTest, TheVeryLanguageComesBeforeAnotherDialect) {
  Add("service:x://1", "service:x", "(a=plain)", {"DEFAULT"}, "en");
  Add("service:x://1", "service:x", "(a=british)", {"DEFAULT"}, "en-GB");
  EXPECT_EQ(AttributesOfUrl("service:x://1", "en"), "(a=plain)");
  EXPECT_EQ(AttributesOfUrl("service:x://1", "EN-gb"), "(a=british)");
}

TEST_F(RegistrySearchTest, AttributesOfAUrlKeepCaseAndWhiteSpace) {
  Add("service:x://1", "service:x", " ( A = x  Y\\2C ) , Key ");
  EXPECT_EQ(AttributesOfUrl("service:x://1", "en"), " ( A = x  Y\\2C ) , Key ");
}

TEST_F(RegistrySearchTest, AttributesOfATypeAreMerged) {
  AddPrinters();
  EXPECT_EQ(AttributesOfType("service:printer:http", "en", {"x-*", "resolution", "protocol"}),
            "(Protocol=http),(resolution=other),x-BUSY");
  const std::string merged = AttributesOfType("service:printer", "en", {"x-*", "resolution", "protocol"});
  EXPECT_TRUE(merged == "(Protocol=http,LPR),(resolution=other,res-600),x-BUSY,x-OK" ||
              merged == "(Protocol=LPR,http),(resolution=res-600,other),x-OK,x-BUSY")
      << merged;
  EXPECT_EQ(AttributesOfType("service:printer", "de", {"loc*"}), "(location-description=13te Etage)");
  EXPECT_EQ(AttributesOfType("service:printer", "fr"), "error 1");
  EXPECT_EQ(AttributesOfType("service:scanner", "fr"), "");
}

TEST_F(RegistrySearchTest, MergedAttributesStopAtTheLimit) {
  for (int i = 0; i < 100; ++i) {
    Add("service:x://" + std::to_string(i), "service:x", "(id=" + std::to_string(1000 + i) + ")");
  }
  const Result<ServiceType> type = ParseServiceType("service:x");
  const Result<AttributeAnswer> answer =
      registry.FindAttributesOfType(*type, {"DEFAULT"}, "en", {}, 30, Unlimited());
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->cut);
  EXPECT_EQ(answer->attributes.size(), 29U);
  EXPECT_TRUE(AttributeList::Parse(answer->attributes));
}

TEST_F(RegistrySearchTest, TypesByNamingAuthorityAndScope) {
  Add("service:x://1", "service:x");
  Add("service:X://2", "service:X");
  Add("service:z.tamro:http://3", "service:z.tamro:http", "", {"TAMRO"});
  Add("http://4", "http", "", {"DEFAULT", "TAMRO"});
  const std::vector<std::string> both = {"DEFAULT", "TAMRO"};
  EXPECT_THAT(registry.FindTypes(both, std::nullopt),
              ElementsAre("http", "service:x", "service:z.tamro:http"));
  EXPECT_THAT(registry.FindTypes(both, ""), ElementsAre("http", "service:x"));
  EXPECT_THAT(registry.FindTypes(both, "Tamro"), ElementsAre("service:z.tamro:http"));
  EXPECT_THAT(registry.FindTypes(both, "other"), IsEmpty());
  EXPECT_THAT(registry.FindTypes({"tamro"}, std::nullopt), ElementsAre("http", "service:z.tamro:http"));
  registry.Deregister("http://4", both, {}, Unlimited());
  EXPECT_THAT(registry.FindTypes({"tamro"}, std::nullopt), ElementsAre("service:z.tamro:http"));
}

}  // namespace
}  // namespace slp
