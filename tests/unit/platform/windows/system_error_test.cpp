#include "platform/windows/system_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>

namespace kelsd::platform {
namespace {

TEST(SystemError, IsTheSystemsWholeSentence) {
  std::array<char, 2048> text{};
  ASSERT_GT(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           ERROR_ACCESS_DENIED, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text.data(),
                           static_cast<DWORD>(text.size()), nullptr),
            0U);
  EXPECT_EQ(SystemErrorText(ERROR_ACCESS_DENIED), text.data());
}

TEST(SystemError, KeepsThePlacesOfInserts) {
  EXPECT_THAT(SystemErrorText(ERROR_BAD_EXE_FORMAT), testing::HasSubstr("%1"));
}

TEST(SystemError, IsUnknownWhereTheSystemSaysNothing) {
  constexpr std::uint32_t kOfNoSystem = 0x20001234;
  EXPECT_EQ(SystemErrorText(kOfNoSystem), "Unknown error.");
}

}  // namespace
}  // namespace kelsd::platform
