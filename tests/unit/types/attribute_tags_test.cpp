#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <type_traits>

#include "kelsd/IKelServiceType.h"

namespace kelsd {
namespace {

struct TagRow {
  IKelServiceType::EAttr tag;
  int number;
  const char* text;
};

std::ostream& operator<<(std::ostream& stream, const TagRow& row) {
  return stream << "tag " << row.number;
}

const TagRow kTags[] = {
    {IKelServiceType::ATTR_NONE, 0, ""},
    {IKelServiceType::ATTR_VERSION, 1, "x-version"},
    {IKelServiceType::ATTR_IP_ADDRESSES, 2, "x-ip-addresses"},
    {IKelServiceType::ATTR_OPERATION, 3, "x-operation"},
    {IKelServiceType::ATTR_SERVER_MODE, 4, "x-server-mode"},
    {IKelServiceType::ATTR_SERVER_ZD_STATUS, 5, "x-server-zd-status"},
    {IKelServiceType::ATTR_SERVER_NS_STATUS, 6, "x-server-ns-status"},
    {IKelServiceType::ATTR_SERVER_NS_NAME, 7, "x-server-ns-name"},
    {IKelServiceType::ATTR_SERVER_NS_PORT, 8, "x-server-ns-port"},
    {IKelServiceType::ATTR_SERVER_NAME, 9, "x-server-name"},
    {IKelServiceType::ATTR_SERVER_NETWORKADAPTER, 10, "x-server-networkadapter"},
    {IKelServiceType::ATTR_SERVER_CLUSTER_STATUS, 11, "x-server-cluster-status"},
    {IKelServiceType::ATTR_PARTNER_TERMINAL, 12, "x-partner-terminal"},
    {IKelServiceType::ATTR_PARTNER_SERVER_NAME, 13, "x-partner-server-name"},
    {IKelServiceType::ATTR_PARTNER_NS_NAME, 14, "x-partner-ns-name"},
    {IKelServiceType::ATTR_VERSION_ZD, 15, "x-version-zd"},
    {IKelServiceType::ATTR_SERVER_MODE_LAST_STARTED, 16, "x-server-mode-last-started"},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_IS_DA, 17, "x-servicediscovery-is-da"},
    {IKelServiceType::ATTR_SERVICEDISCOVERY_DA_ADDRESSES, 18, "x-servicediscovery-da-addresses"},
    {IKelServiceType::ATTR_SERVER_TERMINAL, 19, "x-server-terminal"},
    {IKelServiceType::ATTR_SERVER_CONNECTION_STATUS, 20, "x-server-connection-status"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_NAME, 21, "x-configured-server-ns-name"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NS_PORT, 22, "x-configured-server-ns-port"},
    {IKelServiceType::ATTR_CONFIGURED_SERVER_NAME, 23, "x-configured-server-name"},
    {IKelServiceType::ATTR_SERVER_NS_IPS, 24, "x-server-ns-ips"},
    {IKelServiceType::ATTR_SERVICEHOST_SDK_VERSION, 25, "x-servicehost-sdk-version"},
    {IKelServiceType::ATTR_SERVICEHOST_PRODUCT_NAME, 26, "x-servicehost-product-name"},
    {IKelServiceType::ATTR_SERVICEHOST_MODE, 27, "x-servicehost-mode"},
    {IKelServiceType::ATTR_SERVICEHOST_PLUGIN_NAME, 28, "x-servicehost-plugin-name"},
    {IKelServiceType::ATTR_SERVICEHOST_INSTANCE_NAME, 29, "x-servicehost-instance-name"},
};

// Is destroyed after everything that is made later, the tables of the library included, and then looks a tag
// up.
class LateLookup {
 public:
  static constexpr int kFound = 7;

  ~LateLookup() {
    if (armed) {
      std::_Exit(
          IKelServiceType::StringToEAttr("x-version", nullptr) == IKelServiceType::ATTR_VERSION ? kFound : 1);
    }
  }

  bool armed = false;
};

LateLookup late_lookup;

// Looked up while the program is loaded, like a table of the library that is built from tags would.
const std::string text_at_load = IKelServiceType::ToString(IKelServiceType::ATTR_SERVER_NS_IPS);
const IKelServiceType::EAttr tag_at_load = IKelServiceType::StringToEAttr("x-version", nullptr);

class AttributeTagTest : public testing::TestWithParam<TagRow> {};

TEST_P(AttributeTagTest, HasItsNumberAndText) {
  const TagRow& row = GetParam();
  EXPECT_EQ(static_cast<int>(row.tag), row.number);
  EXPECT_EQ(IKelServiceType::ToString(row.tag), row.text);
}

TEST_P(AttributeTagTest, IsFoundByItsText) {
  const TagRow& row = GetParam();
  for (bool flag : {false, true}) {
    const bool before = flag;
    EXPECT_EQ(IKelServiceType::StringToEAttr(row.text, &flag), row.tag);
    EXPECT_EQ(flag, before);
  }
  EXPECT_EQ(IKelServiceType::StringToEAttr(row.text, nullptr), row.tag);
}

INSTANTIATE_TEST_SUITE_P(AllTags, AttributeTagTest, testing::ValuesIn(kTags));

TEST(AttributeTagsTest, NumbersAreZeroToTwentyNine) {
  int expected = 0;
  for (const TagRow& row : kTags) {
    EXPECT_EQ(row.number, expected++);
  }
  EXPECT_EQ(expected, 30);
}

TEST(AttributeTagsTest, OtherTextsAreUnknown) {
  for (const char* text : {"X-VERSION", "x-foo", " x-version", "x-version ", "version", " "}) {
    bool unknown = false;
    EXPECT_EQ(IKelServiceType::StringToEAttr(text, &unknown), IKelServiceType::ATTR_NONE) << text;
    EXPECT_TRUE(unknown) << text;
    EXPECT_EQ(IKelServiceType::StringToEAttr(text, nullptr), IKelServiceType::ATTR_NONE) << text;
  }
}

TEST(AttributeTagsTest, OtherNumbersHaveNoText) {
  for (const int number : {-1, 30, 99}) {
    EXPECT_EQ(IKelServiceType::ToString(static_cast<IKelServiceType::EAttr>(number)), "") << number;
  }
}

TEST(AttributeTagsTest, CanBeLookedUpWhileTheProgramIsLoaded) {
  EXPECT_EQ(text_at_load, "x-server-ns-ips");
  EXPECT_EQ(tag_at_load, IKelServiceType::ATTR_VERSION);
}

TEST(AttributeTagsDeathTest, CanBeLookedUpWhileTheProcessEnds) {
  EXPECT_EXIT(
      {
        late_lookup.armed = true;
        std::exit(0);
      },
      testing::ExitedWithCode(LateLookup::kFound), "");
}

TEST(AttributeTagsTest, TagIsAnInteger) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<IKelServiceType::EAttr>, int>));
  EXPECT_TRUE((std::is_convertible_v<IKelServiceType::EAttr, int>));
}

}  // namespace
}  // namespace kelsd
