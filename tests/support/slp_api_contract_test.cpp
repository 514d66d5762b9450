// What every provider of the SLP C API does alike, without a handle and without a network: the grammar
// functions and the built-in properties. A test program adds this file to its sources and links the provider
// that it wants to hold to it.
#include <gmock/gmock.h>
#include <slp.h>

#include <optional>
#include <ostream>
#include <string>
#include <tuple>

namespace {

using testing::Values;

/// The text that a call handed out, released; none when it failed.
template <typename Call>
std::optional<std::string> TextOf(const Call& call) {
  char* text = nullptr;
  if (call(&text) != SLP_OK) {
    return std::nullopt;
  }
  std::string copy = text;
  SLPFree(text);
  return copy;
}

struct URLRow {
  std::string url;
  /// Type, host, port, family, service part; none: SLP_PARSE_ERROR.
  std::optional<std::tuple<std::string, std::string, int, std::string, std::string>> parts;

  friend void PrintTo(const URLRow& row, std::ostream* out) { *out << row.url; }
};

class SLPContractURL : public testing::TestWithParam<URLRow> {};

TEST_P(SLPContractURL, IsSplit) {
  SLPSrvURL* parsed = nullptr;
  const SLPError code = SLPParseSrvURL(GetParam().url.c_str(), &parsed);
  if (!GetParam().parts.has_value()) {
    EXPECT_EQ(code, SLP_PARSE_ERROR);
    return;
  }
  ASSERT_EQ(code, SLP_OK);
  EXPECT_EQ(std::make_tuple(std::string(parsed->s_pcSrvType), std::string(parsed->s_pcHost), parsed->s_iPort,
                            std::string(parsed->s_pcNetFamily), std::string(parsed->s_pcSrvPart)),
            GetParam().parts);
  SLPFree(parsed);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SLPContractURL,
    Values(URLRow{"", std::nullopt}, URLRow{"not a url", std::nullopt}, URLRow{"service:x", std::nullopt},
           URLRow{"service:x://", {{"service:x", "", 0, "", ""}}},
           URLRow{"service:zdrest.tamro:http://10.0.0.5:8080/api",
                  {{"service:zdrest.tamro:http", "10.0.0.5", 8080, "", "/api"}}},
           URLRow{"http://host:80/x", {{"http", "host", 80, "", "/x"}}},
           URLRow{"service:x://[::1]:80/p", {{"service:x", "::1", 80, "v6", "/p"}}},
           URLRow{"service:servicehost.tamro:://h:1", {{"service:servicehost.tamro:", "h", 1, "", ""}}}));

struct TextRow {
  std::string in;
  std::optional<std::string> out;

  friend void PrintTo(const TextRow& row, std::ostream* stream) { *stream << row.in; }
};

class SLPContractEscape : public testing::TestWithParam<TextRow> {};

TEST_P(SLPContractEscape, EscapesValues) {
  EXPECT_EQ(TextOf([](char** out) { return SLPEscape(GetParam().in.c_str(), out, SLP_FALSE); }),
            GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(Rows, SLPContractEscape,
                         Values(TextRow{"", ""}, TextRow{"a,b", "a\\2Cb"}, TextRow{"(x)", "\\28x\\29"},
                                TextRow{"\t", "\\09"}, TextRow{"\x7F", "\\7F"},
                                TextRow{"\xC3\xBC", "\xC3\xBC"}, TextRow{"a*b_c", "a*b_c"},
                                TextRow{"\\!<=>~", "\\5C\\21\\3C\\3D\\3E\\7E"}));

class SLPContractUnescape : public testing::TestWithParam<TextRow> {};

TEST_P(SLPContractUnescape, UnescapesValues) {
  EXPECT_EQ(TextOf([](char** out) { return SLPUnescape(GetParam().in.c_str(), out, SLP_FALSE); }),
            GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(Rows, SLPContractUnescape,
                         Values(TextRow{"", ""}, TextRow{"a\\2Cb", "a,b"}, TextRow{"a\\2cb", "a,b"},
                                TextRow{"a\\2", std::nullopt}, TextRow{"a\\", std::nullopt},
                                TextRow{"a\\zz", std::nullopt}));

struct AttributeRow {
  std::string list;
  std::string tag;
  std::optional<std::string> value;

  friend void PrintTo(const AttributeRow& row, std::ostream* out) { *out << row.tag << " of " << row.list; }
};

class SLPContractAttribute : public testing::TestWithParam<AttributeRow> {};

TEST_P(SLPContractAttribute, IsTakenOutOfItsList) {
  const AttributeRow& row = GetParam();
  EXPECT_EQ(TextOf([&](char** out) { return SLPParseAttrs(row.list.c_str(), row.tag.c_str(), out); }),
            row.value);
}

INSTANTIATE_TEST_SUITE_P(Rows, SLPContractAttribute,
                         Values(AttributeRow{"(x-a=1),(x-b=a\\2Cb)", "x-b", "a\\2Cb"},
                                AttributeRow{"(x-a=1),(x-b=2)", "X-A", "1"},
                                AttributeRow{"(x-a=)", "x-a", ""}, AttributeRow{"(x-a)", "x-a", ""},
                                AttributeRow{"(x-a=1)", "x-c", std::nullopt},
                                AttributeRow{"(x-aa=1)", "x-a", std::nullopt}));

TEST(SLPContract, FreesNothing) {
  SLPFree(nullptr);
}

TEST(SLPContract, KnowsItsPropertiesFromTheStart) {
  EXPECT_STREQ(SLPGetProperty("net.slp.OpenSLPVersion"), "2.0.0");
  EXPECT_STREQ(SLPGetProperty("net.slp.locale"), "en");
  EXPECT_EQ(SLPGetProperty("net.slp.unheardOf"), nullptr);
}

TEST(SLPContract, TakesBackAPropertyThatIsSetToNothing) {
  SLPHandle handle = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  const std::string before = SLPGetProperty("net.slp.MTU");
  for (const char* const nothing : {static_cast<const char*>(nullptr), ""}) {
    SLPSetProperty("net.slp.MTU", "1000");
    EXPECT_STREQ(SLPGetProperty("net.slp.MTU"), "1000");
    SLPSetProperty("net.slp.MTU", nothing);
    EXPECT_EQ(SLPGetProperty("net.slp.MTU"), before);
  }
  SLPClose(handle);
}

TEST(SLPContract, DropsWhatTheProcessSetWithTheLastHandle) {
  SLPHandle handle = nullptr;
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  const std::string before = SLPGetProperty("net.slp.MTU");
  SLPSetProperty("net.slp.MTU", "1000");
  SLPClose(handle);
  ASSERT_EQ(SLPOpen("en", SLP_FALSE, &handle), SLP_OK);
  EXPECT_EQ(SLPGetProperty("net.slp.MTU"), before);
  SLPClose(handle);
}

}  // namespace
