#include "api/request_message.h"

#include <gmock/gmock.h>

namespace slp::client {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(WithoutLoopback, LeavesOtherAddressesInTheirOrder) {
  EXPECT_THAT(WithoutLoopback({}), IsEmpty());
  EXPECT_THAT(WithoutLoopback({"127.0.0.1"}), IsEmpty());
  EXPECT_THAT(WithoutLoopback({"127.0.0.1", "10.0.0.2", "127.255.255.254", "12.7.0.1", "128.0.0.1"}),
              ElementsAre("10.0.0.2", "12.7.0.1", "128.0.0.1"));
  EXPECT_THAT(WithoutLoopback({"::1", "fe80::1", "::11"}), ElementsAre("fe80::1", "::11"));
}

}  // namespace
}  // namespace slp::client
