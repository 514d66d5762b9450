#include "text/service_url.h"

#include <gtest/gtest.h>

#include "agent/text/mutation.h"
#include "agent/text/outcome.h"

namespace slp {

void PrintTo(const ServiceUrl& url, std::ostream* out) {
  *out << url.type << '|' << url.host << '|' << url.port << '|' << url.family << '|' << url.part;
}

namespace {

TEST(ParseServiceUrl, SplitsUrls) {
  const struct {
    const char* text;
    ServiceUrl url;
  } rows[] = {
      {"service:x://", {"service:x", "", 0, "", ""}},
      {"service:zdrest.tamro:http://10.0.0.5:8080/api",
       {"service:zdrest.tamro:http", "10.0.0.5", 8080, "", "/api"}},
      {"http://host:80/x", {"http", "host", 80, "", "/x"}},
      {"service:x://[::1]:80/p", {"service:x", "::1", 80, "v6", "/p"}},
      {"service:servicehost.tamro:://h:1", {"service:servicehost.tamro:", "h", 1, "", ""}},
      {"http://www.srvloc.org", {"http", "www.srvloc.org", 0, "", ""}},
      {"service:tftp://bad.glad.org:8080", {"service:tftp", "bad.glad.org", 8080, "", ""}},
      {"service:printer:lpr://hostname", {"service:printer:lpr", "hostname", 0, "", ""}},
      {"service:lpr://www.igore.net:515/draft", {"service:lpr", "www.igore.net", 515, "", "/draft"}},
      {"service:acap://some.where.net;authentication=KERBEROSV4",
       {"service:acap", "some.where.net", 0, "", ";authentication=KERBEROSV4"}},
      {"service:device-drivers:ftp://x3.bean.org/drivers/diskdrivers.drv;driver=scsi;platform=sys3.2-rs3000",
       {"service:device-drivers:ftp", "x3.bean.org", 0, "",
        "/drivers/diskdrivers.drv;driver=scsi;platform=sys3.2-rs3000"}},
      {"service:ftp:/x3.bean.org/drivers/diskdrivers.drv;driver=scsi",
       {"service:ftp", "", 0, "", "/x3.bean.org/drivers/diskdrivers.drv;driver=scsi"}},
      {"SERVICE:X.Tamro://Host:65535", {"SERVICE:X.Tamro", "Host", 65535, "", ""}},
      {"service:x://user@host:7/p", {"service:x", "host", 7, "", "/p"}},
      {"service:x://u;AUTH=k@host;a=b@c", {"service:x", "host", 0, "", ";a=b@c"}},
      {"service:x://host/p@q", {"service:x", "host", 0, "", "/p@q"}},
      {"service:x://@host", {"service:x", "host", 0, "", ""}},
      {"service:x://u:secret@[fe80::1%eth0]", {"service:x", "fe80::1%eth0", 0, "v6", ""}},
      {"service:x://[::ffff:10.0.0.1]", {"service:x", "::ffff:10.0.0.1", 0, "v6", ""}},
      {"service:x://h:0", {"service:x", "h", 0, "", ""}},
      {"service:x://h:00080/", {"service:x", "h", 80, "", "/"}},
      {"service:x://h?q#f", {"service:x", "h", 0, "", "?q#f"}},
      {"service:x:///path", {"service:x", "", 0, "", "/path"}},
      {"service:x://:80", {"service:x", "", 80, "", ""}},
      {"service:x://h_1", {"service:x", "h_1", 0, "", ""}},
      {"service:x://h/a:/b://c", {"service:x", "h", 0, "", "/a:/b://c"}},
      {"service:x:/at/Laser\\20One:LaserWriter@zone/p",
       {"service:x", "Laser\\20One:LaserWriter@zone", 0, "at", "/p"}},
      {"service:x:/AT/a:b:zone;c", {"service:x", "a:b:zone", 0, "at", ";c"}},
      {"service:x:/ipx/0000A1b2:00001b4c5d6e:0451;q",
       {"service:x", "0000A1b2:00001b4c5d6e:0451", 0, "ipx", ";q"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ValueOf(ParseServiceUrl(row.text)), std::optional(row.url)) << row.text;
  }
}

TEST(ParseServiceUrl, RefusesWhatIsNoUrl) {
  const std::string rows[] = {
      "",
      "not a url",
      "service:x",
      "service:x:",
      "service://h",
      "service:",
      "://h",
      "//h",
      "http:",
      "http:/path",
      "http:/at/a:b",
      "mailto:someone@host",
      "service:x://h:",
      "service:x://h:65536",
      "service:x://h:99999999999999999999",
      "service:x://h:-1",
      "service:x://h:80x",
      "service:x://h:1:2",
      "service:x://::1",
      "service:x://[::1",
      "service:x://[::1]x",
      "service:x://[]",
      "service:x://[host]",
      "service:x://[::1%]",
      "service:x://h]",
      "service:x://a@b@c",
      "service:x://a b",
      "service:x://h/a b",
      " service:x://h",
      "service:x://h\n",
      "service:x:y:z://h",
      "service:x y://h",
      "service:x:/ipx/1:2:3",
      "service:x:/ipx/0000A1b2:00001b4c5d6e:045g",
      "service:x:/at/object",
      "service:x:/at/:type",
      "service:x:/at/a=b:type",
      WithNuls("service:x://h\0/p"),
      "service:x://" + Repeat("[", 100000),
      Repeat(":", 100000),
  };
  for (const std::string& row : rows) {
    EXPECT_EQ(ValueOf(ParseServiceUrl(row)), std::nullopt) << row.substr(0, 60);
  }
}

TEST(ParseServiceUrl, AnyMutationParsesOrFailsAndItsPartsComeFromTheText) {
  const std::string seeds[] = {
      "service:zdrest.tamro:http://u@10.0.0.5:8080/api;a=b", "service:x://[fe80::1%eth0]:80/p",
      "service:x:/ipx/0000A1b2:00001b4c5d6e:0451/p", "service:x:/at/a:b@c", "http://h"};
  Mutator mutator(2609, WithNuls("service:/@[]%;.?#0919aF \0\xFF\\"));
  int parsed = 0;
  for (int round = 0; round < 50000; ++round) {
    const std::string text = mutator.Mutate(seeds[mutator.Below(std::size(seeds))]);
    const auto url = ValueOf(ParseServiceUrl(text));
    if (!url) {
      continue;
    }
    ++parsed;
    ASSERT_EQ(text.rfind(url->type + ":/", 0), 0u) << text;
    ASSERT_TRUE(std::string_view(text).ends_with(url->part)) << text;
    ASSERT_NE(text.find(url->host), std::string::npos) << text;
    ASSERT_TRUE(url->port >= 0 && url->port <= 65535) << text;
  }
  EXPECT_GT(parsed, 1000);
}

}  // namespace
}  // namespace slp
