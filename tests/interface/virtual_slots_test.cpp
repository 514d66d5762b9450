// The order in which virtual functions stand in the virtual tables of the built library: programs that were
// compiled against an earlier build call them by their places.
//
// The classes below declare the slots once more, in their order and with nothing of the exported headers but
// the types. A call through them goes to the place of that slot in the table that the library's own object
// has.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/CKelSLPService.h"
#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/CKelServiceTypeServiceHost.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

using kelsd::CKelSLPConfig;
using kelsd::IKelServiceType;
using testing::ElementsAre;
using testing::ElementsAreArray;

class ServiceTypeSlots {
 public:
  virtual ~ServiceTypeSlots() = default;
  virtual std::string Slot1() const = 0;
  virtual std::string Slot2() const = 0;
  virtual void Slot3(const std::string& address) = 0;
  virtual std::string Slot4() const = 0;
  virtual std::map<IKelServiceType::EAttr, std::string> Slot5() const = 0;
  virtual std::vector<IKelServiceType::EAttr> Slot6() const = 0;
  virtual bool Slot7(const IKelServiceType::EAttr& tag, const std::string& value) = 0;
  virtual std::string Slot8(const IKelServiceType::EAttr& tag) const = 0;
  virtual bool Slot9(const IKelServiceType::EAttr& tag) const = 0;
  virtual std::vector<std::string> Slot10() const = 0;
  virtual unsigned short Slot11() const = 0;
  virtual void Slot12(const unsigned short& lifetime) = 0;
  virtual void Slot13(const kelsd::SKelServiceAttributeSearchResult& result) = 0;
};

class ConfigurationSlots {
 public:
  virtual ~ConfigurationSlots() = default;
  virtual void Slot1() = 0;
  virtual std::map<CKelSLPConfig::EProperty, std::string> Slot2() const = 0;
};

class FacadeSlots {
 public:
  virtual ~FacadeSlots() = default;
};

namespace {

// `object` with its table read as `Slots` lays it out. The detour keeps the compiler from knowing the real
// class.
template <typename Slots, typename Class>
Slots& As(Class& object) {
  void* volatile address = &object;
  return *static_cast<Slots*>(address);
}

struct ServiceTypeCase {
  const char* name;
  std::unique_ptr<kelsd::CKelServiceTypeTamroBase> (*make)();
  const char* type;
};

class ServiceTypeSlotsTest : public testing::TestWithParam<ServiceTypeCase> {};

TEST_P(ServiceTypeSlotsTest, StandInTheirOrder) {
  const auto object = GetParam().make();
  auto& slots = As<ServiceTypeSlots>(*object);

  EXPECT_EQ(slots.Slot1(), GetParam().type);
  EXPECT_EQ(slots.Slot2(), "host:1");
  slots.Slot3("other:2");
  EXPECT_EQ(object->GetAddress(), "other:2");
  EXPECT_EQ(slots.Slot4(), std::string(GetParam().type) + "://other:2");
  EXPECT_EQ(slots.Slot5(), object->GetAttributes());
  EXPECT_THAT(slots.Slot6(), ElementsAreArray(object->GetAttributeTags()));
  EXPECT_TRUE(slots.Slot7(IKelServiceType::ATTR_VERSION, "4.2"));
  EXPECT_EQ(object->GetAttrVersion(), "4.2");
  EXPECT_EQ(slots.Slot8(IKelServiceType::ATTR_VERSION), "4.2");
  EXPECT_TRUE(slots.Slot9(IKelServiceType::ATTR_VERSION));
  EXPECT_FALSE(slots.Slot9(IKelServiceType::ATTR_NONE));
  EXPECT_THAT(slots.Slot10(), ElementsAre("tamro"));
  EXPECT_EQ(slots.Slot11(), 7);
  slots.Slot12(9);
  EXPECT_EQ(object->GetLifetime(), 9);
  kelsd::SKelServiceAttributeSearchResult found("");
  found.Attributes = {{IKelServiceType::ATTR_VERSION, "5.0"}};
  slots.Slot13(found);
  EXPECT_EQ(object->GetAttrVersion(), "5.0");
}

INSTANTIATE_TEST_SUITE_P(
    Classes, ServiceTypeSlotsTest,
    testing::Values(ServiceTypeCase{"ZDREST",
                                    []() -> std::unique_ptr<kelsd::CKelServiceTypeTamroBase> {
                                      return std::make_unique<kelsd::CKelServiceTypeZDREST>("host:1", 7);
                                    },
                                    "service:zdrest.tamro:http"},
                    ServiceTypeCase{"ZDTerminalREST",
                                    []() -> std::unique_ptr<kelsd::CKelServiceTypeTamroBase> {
                                      return std::make_unique<kelsd::CKelServiceTypeZDTerminalREST>("host:1",
                                                                                                    7);
                                    },
                                    "service:terminal.tamro:http"},
                    ServiceTypeCase{"ServiceHost",
                                    []() -> std::unique_ptr<kelsd::CKelServiceTypeTamroBase> {
                                      return std::make_unique<kelsd::CKelServiceTypeServiceHost>("render",
                                                                                                 "host:1", 7);
                                    },
                                    "service:servicehost.tamro:render"}),
    [](const auto& test) { return std::string(test.param.name); });

template <typename Configuration>
class ConfigurationSlotsTest : public testing::Test {};
using Configurations = testing::Types<CKelSLPConfig, kelsd::CKelSLPClientConfig, kelsd::CKelSLPServiceConfig>;
TYPED_TEST_SUITE(ConfigurationSlotsTest, Configurations);

TYPED_TEST(ConfigurationSlotsTest, StandInTheirOrder) {
  TypeParam object;
  auto& slots = As<ConfigurationSlots>(object);

  ASSERT_TRUE(object.SetMulticastTTL(CKelSLPConfig::MULTICASTTTL_DEFAULT - 1).IsOk());
  slots.Slot1();
  EXPECT_EQ(object.GetMulticastTTL(), CKelSLPConfig::MULTICASTTTL_DEFAULT);
  EXPECT_EQ(slots.Slot2(), object.Validate());
}

// Deletes one object through slot 0 of its table and says whether the object's own destructor ran.
template <typename Slots, typename Base, typename... Arguments>
bool IsDestroyedBySlot0(Arguments... arguments) {
  class Derived final : public Base {
   public:
    Derived(bool& destroyed, Arguments... values) : Base(values...), destroyed_(destroyed) {}
    ~Derived() override { destroyed_ = true; }

   private:
    bool& destroyed_;
  };
  bool destroyed = false;
  delete &As<Slots>(*new Derived(destroyed, arguments...));
  return destroyed;
}

TEST(VirtualSlotsTest, SlotZeroIsTheDestructor) {
  EXPECT_TRUE((IsDestroyedBySlot0<FacadeSlots, kelsd::CKelSLP>()));
  EXPECT_TRUE((IsDestroyedBySlot0<FacadeSlots, kelsd::CKelSLPClient>()));
  EXPECT_TRUE((IsDestroyedBySlot0<FacadeSlots, kelsd::CKelSLPService>()));
  EXPECT_TRUE((IsDestroyedBySlot0<ConfigurationSlots, CKelSLPConfig>()));
  EXPECT_TRUE((IsDestroyedBySlot0<ConfigurationSlots, kelsd::CKelSLPClientConfig>()));
  EXPECT_TRUE((IsDestroyedBySlot0<ConfigurationSlots, kelsd::CKelSLPServiceConfig>()));
  EXPECT_TRUE((IsDestroyedBySlot0<ServiceTypeSlots, kelsd::CKelServiceTypeZDREST>("host:1", 7)));
  EXPECT_TRUE((IsDestroyedBySlot0<ServiceTypeSlots, kelsd::CKelServiceTypeZDTerminalREST>("host:1", 7)));
  EXPECT_TRUE(
      (IsDestroyedBySlot0<ServiceTypeSlots, kelsd::CKelServiceTypeServiceHost>("render", "host:1", 7)));
}

}  // namespace
