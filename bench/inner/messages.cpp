// The codec: a request that comes in, a reply that goes out.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/support/services.h"
#include "wire/codec.h"
#include "wire/messages.h"

namespace {

slp::Message Request() {
  slp::Message message;
  message.body = slp::SrvRqst{"", bench::kType, "DEFAULT", bench::OnlyThis(1), ""};
  return message;
}

slp::Message Reply(std::size_t urls) {
  slp::SrvRply reply;
  for (std::size_t index = 0; index < urls; ++index) {
    reply.urls.push_back({10800, bench::Url(index), {}});
  }
  slp::Message message;
  message.body = reply;
  return message;
}

void DecodeServiceRequest(benchmark::State& state) {
  const slp::Bytes bytes = slp::Encode(Request()).value();
  for (auto _ : state) {
    benchmark::DoNotOptimize(slp::Decode(bytes));
  }
}
BENCHMARK(DecodeServiceRequest);

void EncodeServiceReply(benchmark::State& state) {
  const slp::Message reply = Reply(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(slp::Encode(reply));
  }
}
BENCHMARK(EncodeServiceReply)->Arg(1)->Arg(20)->Arg(1000);

}  // namespace
