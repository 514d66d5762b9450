// SLPParseSrvURL, SLPParseAttrs, SLPEscape, SLPUnescape at the border of the C API.
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <tuple>

#include "slp.h"

namespace {

struct Text {
  SLPError error;
  std::optional<std::string> text;  // none: null
  bool operator==(const Text&) const = default;
};

void PrintTo(const Text& text, std::ostream* out) {
  *out << text.error << ' ' << text.text.value_or("(null)");
}

/// What `call`, which gets the place for the answer, returns and hands out.
template <typename Call>
Text HandedOut(Call call) {
  char garbage = 'x';
  char* text = &garbage;
  const SLPError error = call(&text);
  Text result{error, text == nullptr ? std::nullopt : std::optional<std::string>(text)};
  SLPFree(text);
  return result;
}

Text Escape(const char* text, SLPBoolean is_tag = SLP_FALSE) {
  return HandedOut([=](char** out) { return SLPEscape(text, out, is_tag); });
}

Text Unescape(const char* text, SLPBoolean is_tag = SLP_FALSE) {
  return HandedOut([=](char** out) { return SLPUnescape(text, out, is_tag); });
}

Text ParseAttribute(const char* list, const char* tag) {
  return HandedOut([=](char** out) { return SLPParseAttrs(list, tag, out); });
}

const Text kNone{SLP_PARSE_ERROR, std::nullopt};

TEST(Escape, Texts) {
  EXPECT_EQ(Escape("a,b"), (Text{SLP_OK, "a\\2Cb"}));
  EXPECT_EQ(Escape("(x)"), (Text{SLP_OK, "\\28x\\29"}));
  EXPECT_EQ(Escape("\t"), (Text{SLP_OK, "\\09"}));
  EXPECT_EQ(Escape("\x7F"), (Text{SLP_OK, "\\7F"}));
  EXPECT_EQ(Escape("\xC3\xBC"), (Text{SLP_OK, "\xC3\xBC"}));
  EXPECT_EQ(Escape("a*b_c"), (Text{SLP_OK, "a*b_c"}));
  EXPECT_EQ(Escape(""), (Text{SLP_OK, ""}));
}

TEST(Escape, Tags) {
  EXPECT_EQ(Escape("x-version", SLP_TRUE), (Text{SLP_OK, "x-version"}));
  EXPECT_EQ(Escape("a(b", SLP_TRUE), (Text{SLP_OK, "a\\28b"}));
  for (const char* tag : {"a*", "a_b", "a\tb", "a\rb", "a\nb"}) {
    EXPECT_EQ(Escape(tag, SLP_TRUE), kNone) << tag;
  }
}

TEST(Unescape, Texts) {
  EXPECT_EQ(Unescape("a\\2Cb"), (Text{SLP_OK, "a,b"}));
  EXPECT_EQ(Unescape("a\\2cb"), (Text{SLP_OK, "a,b"}));
  EXPECT_EQ(Unescape("a\\2"), kNone);
  EXPECT_EQ(Unescape("a\\"), kNone);
  EXPECT_EQ(Unescape("a\\zz"), kNone);
  EXPECT_EQ(Unescape("a\\00b"), kNone);
  EXPECT_EQ(Unescape(""), (Text{SLP_OK, ""}));
}

TEST(Unescape, OpaqueStaysAsItIs) {
  EXPECT_EQ(Unescape("\\FF\\00\\2C"), (Text{SLP_OK, "\\FF\\00\\2C"}));
  EXPECT_EQ(Unescape("\\ff\\41"), (Text{SLP_OK, "\\ff\\41"}));
  EXPECT_EQ(Unescape("\\FF\\zz"), kNone);
}

TEST(Unescape, Tags) {
  EXPECT_EQ(Unescape("a\\28b", SLP_TRUE), (Text{SLP_OK, "a(b"}));
  EXPECT_EQ(Unescape("a\\5Fb", SLP_TRUE), kNone);
}

TEST(ParseAttrs, Values) {
  EXPECT_EQ(ParseAttribute("(x-a=1\\2C2),(B=2),(k),(e=)", "x-a"), (Text{SLP_OK, "1\\2C2"}));
  EXPECT_EQ(ParseAttribute("(x-a=1),(B=2)", "b"), (Text{SLP_OK, "2"}));
  EXPECT_EQ(ParseAttribute("(a)", "a"), (Text{SLP_OK, ""}));
  EXPECT_EQ(ParseAttribute("(a=)", "a"), (Text{SLP_OK, ""}));
  EXPECT_EQ(ParseAttribute("(a=1)", "c"), kNone);
  EXPECT_EQ(ParseAttribute("", "a"), kNone);
}

TEST(ParseSrvUrl, Parts) {
  using Parts = std::tuple<std::string, std::string, int, std::string, std::string>;
  const auto parse = [](const char* text) {
    SLPSrvURL* url = nullptr;
    EXPECT_EQ(SLPParseSrvURL(text, &url), SLP_OK) << text;
    Parts parts(url->s_pcSrvType, url->s_pcHost, url->s_iPort, url->s_pcNetFamily, url->s_pcSrvPart);
    SLPFree(url);
    return parts;
  };
  EXPECT_EQ(parse("service:x://"), Parts("service:x", "", 0, "", ""));
  EXPECT_EQ(parse("service:zdrest.tamro:http://10.0.0.5:8080/api"),
            Parts("service:zdrest.tamro:http", "10.0.0.5", 8080, "", "/api"));
  EXPECT_EQ(parse("http://host:80/x"), Parts("http", "host", 80, "", "/x"));
  EXPECT_EQ(parse("service:x://[::1]:80/p"), Parts("service:x", "::1", 80, "v6", "/p"));
  EXPECT_EQ(parse("service:servicehost.tamro:://h:1"), Parts("service:servicehost.tamro:", "h", 1, "", ""));
}

TEST(ParseSrvUrl, WhatIsNoUrl) {
  for (const char* text : {"", "not a url", "service:x"}) {
    SLPSrvURL garbage{};
    SLPSrvURL* url = &garbage;
    EXPECT_EQ(SLPParseSrvURL(text, &url), SLP_PARSE_ERROR) << text;
    EXPECT_EQ(url, nullptr);
  }
}

TEST(TextCalls, NullIsRefused) {
  char* text = nullptr;
  SLPSrvURL* url = nullptr;
  EXPECT_EQ(SLPParseSrvURL(nullptr, &url), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPParseSrvURL("http://h", nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPParseAttrs(nullptr, "a", &text), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPParseAttrs("(a=1)", nullptr, &text), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPParseAttrs("(a=1)", "a", nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPEscape(nullptr, &text, SLP_FALSE), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPEscape("a", nullptr, SLP_FALSE), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPUnescape(nullptr, &text, SLP_FALSE), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPUnescape("a", nullptr, SLP_FALSE), SLP_PARAMETER_BAD);
  SLPFree(nullptr);
}

}  // namespace
