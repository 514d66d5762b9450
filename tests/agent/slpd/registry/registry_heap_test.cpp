// What the registry reckons that it takes of the heap, against what it takes.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "agent/slpd/daemon_logic.h"
#include "slpd/registry/registry.h"
#include "support/heap_use.h"

namespace slp {
namespace {

constexpr Seconds kStart{1000};

struct Shape {
  const char* name;
  std::function<void(Registration& registration, int number)> make;
};

std::string Numbered(const std::string& text, int number) {
  return text + std::to_string(100'000 + number);
}

/// Values that take as much of the index, and as little text, as they can.
std::string ManyShortValues(int number) {
  std::string list = "(" + std::string(72, 't') + '=';
  for (int i = 0; i < 20; ++i) {
    list += (i == 0 ? "" : ",") + std::to_string(number * 20 + i);
  }
  return list + ')';
}

const Shape kShapes[] = {
    {"usual ones",
     [](Registration& registration, int number) {
       registration.attributes =
           Numbered("(id=", number) + Numbered("),(x-server-name=srv", number) +
           "),(x-version=4.2),(x-ip-addresses=10.0.0.1,10.0.0.2),(x-server-ns-port=8081)";
     }},
    {"nothing but a URL", [](Registration&, int) {}},
    {"each a type of its own",
     [](Registration& registration, int number) {
       registration.service_type = Numbered("service:" + std::string(200, 't'), number);
     }},
    {"each an end of its own",
     [](Registration& registration, int number) {
       registration.lifetime = static_cast<std::uint16_t>(1 + number);
     }},
    {"each a host of its own",
     [](Registration& registration, int number) { registration.host = Numbered("2001:db8::7:8:", number); }},
    {"long texts",
     [](Registration& registration, int number) {
       registration.attributes = Numbered("(text=" + std::string(1000, 'x'), number) + ')';
     }},
    {"many short values",
     [](Registration& registration, int number) { registration.attributes = ManyShortValues(number); }},
};

class RegistryHeapTest : public testing::TestWithParam<Shape> {
 protected:
  static Registration Made(int number) {
    Registration registration;
    registration.url = Numbered("service:x://10.0.0.1:80/", number);
    registration.service_type = "service:x";
    registration.scopes = {"DEFAULT"};
    registration.lifetime = 1000;
    GetParam().make(registration, number);
    return registration;
  }

  RecordedEvents events_;
};

// Lists that grow by doubling, and places that are free, are why it is not the same.
TEST_P(RegistryHeapTest, IsReckonedAboutAsItIs) {
  for (const int services : {1000, 1500, 2000}) {
    const std::size_t before = kelsd::HeapUse();
    Registry registry(events_);
    for (int i = 0; i < services; ++i) {
      ASSERT_EQ(registry.Register(Made(i), kStart), Error::kOk);
      events_.Take();
    }
    const double taken = static_cast<double>(kelsd::HeapUse() - before);
    const double reckoned = static_cast<double>(registry.bytes());
    EXPECT_LT(taken, 1.05 * reckoned) << services;
    EXPECT_GT(taken, 0.85 * reckoned) << services;
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RegistryHeapTest, testing::ValuesIn(kShapes),
                         [](const testing::TestParamInfo<Shape>& shape) {
                           std::string name = shape.param.name;
                           std::erase_if(name, [](char c) { return c == ' '; });
                           return name;
                         });

}  // namespace
}  // namespace slp
