#include "foundation/type_name.h"

#include <gtest/gtest.h>

namespace kelsd {
namespace {

TEST(TypeNameTest, IsReadable) {
  EXPECT_EQ(ReadableTypeName(typeid(unsigned short)), "unsigned short");
  EXPECT_EQ(ReadableTypeName(typeid(bool)), "bool");
  EXPECT_EQ(ReadableTypeName(typeid(int)), "int");
  EXPECT_EQ(ReadableTypeName(typeid(long double)), "long double");
}

TEST(TypeNameTest, NamesSixtyFourBitNumbersAsTheCompilerDoes) {
  const std::string name = ReadableTypeName(typeid(unsigned long long));
  EXPECT_TRUE(name == "unsigned long long" || name == "unsigned __int64") << name;
}

}  // namespace
}  // namespace kelsd
