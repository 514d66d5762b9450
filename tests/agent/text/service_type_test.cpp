#include "text/service_type.h"

#include <gtest/gtest.h>

#include "agent/text/outcome.h"

namespace slp {

void PrintTo(const ServiceType& type, std::ostream* out) {
  *out << type.service << '|' << type.abstract_type << '|' << type.naming_authority << '|'
       << type.has_concrete << '|' << type.concrete_type;
}

namespace {

TEST(ParseServiceType, SplitsTypesOfServiceUrls) {
  const struct {
    const char* text;
    ServiceType type;
    const char* abstract;
  } rows[] = {
      {"service:x", {true, "x", "", false, ""}, "service:x"},
      {"service:printer:lpr", {true, "printer", "", true, "lpr"}, "service:printer"},
      {"service:zdrest.tamro:http", {true, "zdrest", "tamro", true, "http"}, "service:zdrest.tamro"},
      {"service:servicehost.tamro", {true, "servicehost", "tamro", false, ""}, "service:servicehost.tamro"},
      {"service:servicehost.tamro:", {true, "servicehost", "tamro", true, ""}, "service:servicehost.tamro"},
      {"service:a.b.one", {true, "a.b", "one", false, ""}, "service:a.b.one"},
      {"service:directory-agent", {true, "directory-agent", "", false, ""}, "service:directory-agent"},
      {"service:Printer.Acme:HTTP", {true, "Printer", "Acme", true, "HTTP"}, "service:Printer.Acme"},
      {"service:abstract:z39.50r", {true, "abstract", "", true, "z39.50r"}, "service:abstract"},
      {"http", {false, "http", "", false, ""}, "http"},
      {"iris.beep", {false, "iris.beep", "", false, ""}, "iris.beep"},
  };
  for (const auto& row : rows) {
    const auto type = ValueOf(ParseServiceType(row.text));
    ASSERT_EQ(type, std::optional(row.type)) << row.text;
    EXPECT_EQ(type->ToString(), row.text);
    EXPECT_EQ(type->AbstractString(), row.abstract);
  }
}

TEST(ParseServiceType, IgnoresCaseOfTheSchemeAndWhiteSpaceAround) {
  EXPECT_EQ(ValueOf(ParseServiceType(" SERVICE:X\n")), std::optional(ServiceType{true, "X", "", false, ""}));
}

TEST(ParseServiceType, RefusesWhatIsNoType) {
  for (const std::string& text : {std::string(),
                                  std::string(" "),
                                  std::string("service"),
                                  std::string("service:"),
                                  std::string("service::http"),
                                  std::string("service:.tamro"),
                                  std::string("service:x."),
                                  std::string("service:a b"),
                                  std::string("service:a,b"),
                                  std::string("service:x:y:z"),
                                  std::string("service:x:y:"),
                                  std::string("service:x/y"),
                                  std::string("service:x*"),
                                  std::string("not a url"),
                                  std::string("http:"),
                                  std::string("zdrest:http"),
                                  WithNuls("service:x\0"),
                                  std::string("service:x\\2C"),
                                  std::string("service:\xC3\xBC"),
                                  "service:x" + Repeat(":", 100000)}) {
    EXPECT_EQ(ValueOf(ParseServiceType(text)), std::nullopt) << text.substr(0, 40);
  }
}

TEST(TypeMatches, FindsConcreteTypesByTheirAbstractType) {
  const struct {
    const char* requested;
    const char* registered;
    bool matches;
  } rows[] = {
      {"service:printer", "service:printer:lpr", true},
      {"service:printer", "service:printer:http", true},
      {"service:printer:http", "service:printer:http", true},
      {"service:printer:http", "service:printer:lpr", false},
      {"service:printer:http", "service:printer", false},
      {"service:printer", "service:printer", true},
      {"SERVICE:Printer", "service:PRINTER:lpr", true},
      {"service:x.one", "service:x.two", false},
      {"service:x", "service:x.one", false},
      {"service:abstract.one:y", "service:abstract.two:y", false},
      {"service:servicehost.tamro", "service:servicehost.tamro:", true},
      {"service:servicehost.tamro:", "service:servicehost.tamro:", true},
      {"service:servicehost.tamro:", "service:servicehost.tamro", false},
      {"service:servicehost.tamro:", "service:servicehost.tamro:http", false},
      {"http", "http", true},
      {"http", "service:http", false},
      {"service:http", "http", false},
      {"HTTP", "http", true},
  };
  for (const auto& row : rows) {
    const auto requested = ParseServiceType(row.requested);
    const auto registered = ParseServiceType(row.registered);
    ASSERT_TRUE(requested && registered);
    EXPECT_EQ(TypeMatches(*requested, *registered), row.matches)
        << row.requested << " for " << row.registered;
  }
}

TEST(TypeGroupNumber, FollowsTheFormulaOfRfc3111) {
  EXPECT_EQ(TypeGroupNumber("a"), 97);
  // 97 * 33 + 98 = 3299 = 3 * 1024 + 227
  EXPECT_EQ(TypeGroupNumber("ab"), 227);
  EXPECT_EQ(TypeGroupNumber("service:x"), 99);
  EXPECT_EQ(TypeGroupNumber("service:printer"), 463);
  EXPECT_EQ(TypeGroupNumber("service:printer:lpr"), 407);
}

TEST(TypeGroupNumber, IsTheSameForEqualTypes) {
  EXPECT_EQ(TypeGroupNumber(" SERVICE:Printer "), 463);
}

}  // namespace
}  // namespace slp
