// The registry by itself, without sockets: each operation at growing numbers of registrations.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench/support/services.h"
#include "fuzz/no_events.h"
#include "slpd/registry/registry.h"

namespace {

constexpr slp::Instant kNow(0);

/// More than any of the searches takes.
constexpr std::size_t kEffort = std::size_t{1} << 30U;

slp::Registration Service(std::size_t index) {
  slp::Registration registration;
  registration.url = bench::Url(index);
  registration.service_type = bench::kType;
  registration.scopes = {"DEFAULT"};
  registration.attributes = bench::Attributes(index);
  registration.lifetime = 10800;
  return registration;
}

/// A registry with as many services as the benchmark's argument says.
class FilledRegistry : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State& state) override {
    registry_ = std::make_unique<slp::Registry>(events_);
    size_ = static_cast<std::size_t>(state.range(0));
    for (std::size_t index = 0; index < size_; ++index) {
      if (registry_->Register(Service(index), kNow) != slp::Error::kOk) {
        std::abort();
      }
    }
  }
  void TearDown(const benchmark::State&) override { registry_.reset(); }

 protected:
  std::size_t Find(const std::string& filter) const {
    const slp::ServiceQuery query{slp::ParseServiceType(bench::kType).value(),
                                  {"DEFAULT"},
                                  "en",
                                  slp::Predicate::Parse(filter).value()};
    std::size_t found = 0;
    slp::Effort effort(kEffort);
    const slp::Error error =
        registry_->FindServices(query, kNow, effort, [&found](std::string_view, std::uint16_t) {
          ++found;
          return true;
        });
    return error == slp::Error::kOk ? found : 0;
  }

  slp::fuzz::NoEvents events_;
  std::unique_ptr<slp::Registry> registry_;
  std::size_t size_ = 0;
};

BENCHMARK_DEFINE_F(FilledRegistry, RegisterAndDeregister)(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(registry_->Register(Service(size_), kNow));
    slp::Effort effort(kEffort);
    benchmark::DoNotOptimize(registry_->Deregister(bench::Url(size_), {"DEFAULT"}, {}, effort));
  }
}
BENCHMARK_REGISTER_F(FilledRegistry, RegisterAndDeregister)->RangeMultiplier(10)->Range(100, 100'000);

BENCHMARK_DEFINE_F(FilledRegistry, FindOneByEquality)(benchmark::State& state) {
  for (auto _ : state) {
    if (Find(bench::OnlyThis(size_ / 2)) != 1) {
      state.SkipWithError("the filter must find one");
    }
  }
}
BENCHMARK_REGISTER_F(FilledRegistry, FindOneByEquality)->RangeMultiplier(10)->Range(100, 100'000);

BENCHMARK_DEFINE_F(FilledRegistry, FindOneByItsEnd)(benchmark::State& state) {
  for (auto _ : state) {
    if (Find(bench::OnlyThisByEnd(size_ / 2)) != 1) {
      state.SkipWithError("the filter must find one");
    }
  }
}
BENCHMARK_REGISTER_F(FilledRegistry, FindOneByItsEnd)->RangeMultiplier(10)->Range(100, 100'000);

}  // namespace
