#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd {
namespace {

using Type = CKelServiceTypeZDTerminalREST;

template <typename Enum>
struct TextRow {
  Enum value;
  int number;
  const char* text;
};

// Checks every row in both directions, and what the conversions do with anything else.
template <typename Enum, std::size_t kSize>
void ExpectTexts(const TextRow<Enum> (&rows)[kSize], Enum (*from_text)(const std::string&, bool*)) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<Enum>, int>));
  int expected_number = 0;
  for (const TextRow<Enum>& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.number, expected_number++);
    EXPECT_EQ(static_cast<int>(row.value), row.number);
    EXPECT_EQ(Type::ToString(row.value), row.text);
    EXPECT_EQ(from_text(row.text, nullptr), row.value);
    for (bool flag : {false, true}) {
      const bool before = flag;
      EXPECT_EQ(from_text(row.text, &flag), row.value);
      EXPECT_EQ(flag, before);
    }
  }
  for (const int number : {-1, static_cast<int>(kSize), 99}) {
    EXPECT_EQ(Type::ToString(static_cast<Enum>(number)), "") << number;
  }
  for (const char* text : {"UPDATE", "none", "main", "running", " ", "MAIN "}) {
    bool unknown = false;
    EXPECT_EQ(from_text(text, &unknown), Enum{}) << text;
    EXPECT_TRUE(unknown) << text;
    EXPECT_EQ(from_text(text, nullptr), Enum{}) << text;
  }
}

TEST(ZDTerminalTextsTest, Operations) {
  const TextRow<Type::EOperation> rows[] = {
      {Type::OPERATION_NOT_SET, 0, ""},        {Type::OPERATION_NONE, 1, "NONE"},
      {Type::OPERATION_SERVER, 2, "SERVER"},   {Type::OPERATION_BACKUP, 3, "BACKUP"},
      {Type::OPERATION_RESTORE, 4, "RESTORE"},
  };
  ExpectTexts(rows, &Type::StringToEOperation);
}

TEST(ZDTerminalTextsTest, ServerModes) {
  const TextRow<Type::EServerMode> rows[] = {
      {Type::SERVER_MODE_NOT_SET, 0, ""},
      {Type::SERVER_MODE_LOCALHOST, 1, "LOCALHOST"},
      {Type::SERVER_MODE_54FREE, 2, "54FREE"},
      {Type::SERVER_MODE_MULTIUSER, 3, "MULTIUSER"},
      {Type::SERVER_MODE_MAIN, 4, "MAIN"},
      {Type::SERVER_MODE_REPLICATION, 5, "REPLICATION"},
      {Type::SERVER_MODE_NS_ONLY, 6, "NS_ONLY"},
      {Type::SERVER_MODE_54FREE_SERVERONLY, 7, "54FREE_SERVERONLY"},
      {Type::SERVER_MODE_MULTIUSER_SERVERONLY, 8, "MULTIUSER_SERVERONLY"},
      {Type::SERVER_MODE_DA_ONLY, 9, "DA_ONLY"},
  };
  ExpectTexts(rows, &Type::StringToEServerMode);
}

TEST(ZDTerminalTextsTest, ExecutableStatuses) {
  const TextRow<Type::EExecutableStatus> rows[] = {
      {Type::EXECUTABLE_STATUS_NOT_SET, 0, ""},
      {Type::EXECUTABLE_STATUS_STOPPED, 1, "STOPPED"},
      {Type::EXECUTABLE_STATUS_RUNNING, 2, "RUNNING"},
  };
  ExpectTexts(rows, &Type::StringToEExecutableStatus);
}

TEST(ZDTerminalTextsTest, TagsKeepTheirTexts) {
  EXPECT_EQ(Type::ToString(IKelServiceType::ATTR_OPERATION), "x-operation");
}

}  // namespace
}  // namespace kelsd
