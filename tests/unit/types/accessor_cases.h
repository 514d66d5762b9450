// Rows for the typed accessors of a service type: the getter and setter of one attribute, and its tag.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kelsd/IKelServiceType.h"

namespace kelsd::test {

template <typename Type>
struct TextAccessor {
  IKelServiceType::EAttr tag;
  std::string (Type::*get)() const;
  void (Type::*set)(const std::string&);
};

template <typename Type>
struct PortAccessor {
  IKelServiceType::EAttr tag;
  unsigned short (Type::*get)() const;
  void (Type::*set)(const unsigned short&);
};

template <typename Type>
struct AddressesAccessor {
  IKelServiceType::EAttr tag;
  std::vector<std::string> (Type::*get)() const;
  void (Type::*set)(const std::vector<std::string>&);
};

/// Checks that the text is stored as it is given, under the tag and nowhere else.
template <typename Type>
void ExpectText(const Type& fresh, const TextAccessor<Type>& accessor) {
  SCOPED_TRACE(IKelServiceType::ToString(accessor.tag));
  EXPECT_EQ((fresh.*accessor.get)(), "");
  Type type = fresh;
  (type.*accessor.set)(" a,B ");
  EXPECT_EQ((type.*accessor.get)(), " a,B ");
  auto expected = fresh.GetAttributes();
  expected[accessor.tag] = " a,B ";
  EXPECT_EQ(type.GetAttributes(), expected);
}

template <typename Type>
void ExpectPort(const Type& fresh, const PortAccessor<Type>& accessor) {
  SCOPED_TRACE(IKelServiceType::ToString(accessor.tag));
  EXPECT_EQ((fresh.*accessor.get)(), 0);
  Type type = fresh;
  (type.*accessor.set)(65535);
  EXPECT_EQ((type.*accessor.get)(), 65535);
  auto expected = fresh.GetAttributes();
  expected[accessor.tag] = "65535";
  EXPECT_EQ(type.GetAttributes(), expected);
  for (const char* text : {"80x", "70000", "-1", "", "80 "}) {
    type.SetAttributeValue(accessor.tag, text);
    EXPECT_EQ((type.*accessor.get)(), 0) << text;
  }
}

template <typename Type>
void ExpectAddresses(const Type& fresh, const AddressesAccessor<Type>& accessor) {
  SCOPED_TRACE(IKelServiceType::ToString(accessor.tag));
  EXPECT_EQ((fresh.*accessor.get)(), std::vector<std::string>());
  Type type = fresh;
  (type.*accessor.set)({"10.0.0.9", " 10.0.0.1 ", "fe80::1", ""});
  EXPECT_EQ((type.*accessor.get)(), (std::vector<std::string>{"10.0.0.1", "10.0.0.9", "FE80::1"}));
  auto expected = fresh.GetAttributes();
  expected[accessor.tag] = "10.0.0.1,10.0.0.9,FE80::1";
  EXPECT_EQ(type.GetAttributes(), expected);
  type.SetAttributeValue(accessor.tag, "b,, a ");
  EXPECT_EQ((type.*accessor.get)(), (std::vector<std::string>{"A", "B"}));
}

}  // namespace kelsd::test
