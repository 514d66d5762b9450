// Who asks for a name gets one answer, however little memory there is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/error.hpp>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "net/host_lookups.h"
#include "support/allocation_failure.h"
#include "support/latch.h"

namespace slp {
namespace {

using kelsd::AllocationFailure;
using kelsd::support::Latch;

struct Told {
  std::string name;
  asio::error_code error;
  std::thread::id thread;
};

// What was told, by any thread.
class Answers {
 public:
  void Add(const HostQuery& query, const HostAnswer& answer) {
    const std::lock_guard lock(mutex_);
    told_.push_back({query.name, answer.error, std::this_thread::get_id()});
  }

  std::vector<Told> All() const {
    const std::lock_guard lock(mutex_);
    return told_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Told> told_;
};

// Its copy takes memory, too.
HostQuery LongName(int number) {
  return {std::string(100, 'n') + std::to_string(number), false};
}

TEST(HostLookupsMemory, TheCallerIsToldWhenNoThreadCanTakeTheName) {
  Answers answers;
  Latch found(1);
  HostLookups lookups(
      [&](const HostQuery& query, const HostAnswer& answer) {
        answers.Add(query, answer);
        if (!answer.error) {
          found.CountDown();
        }
      },
      [](const HostQuery&) {
        return HostAnswer{{}, {asio::ip::address_v4::loopback()}};
      });
  int failures = 0;
  for (bool failed = true; failed;) {
    const HostQuery query = LongName(failures);
    AllocationFailure failure(failures);
    lookups.Begin(query);
    failed = failure.Happened();
    if (failed) {
      ++failures;
      const std::vector<Told> told = answers.All();
      ASSERT_EQ(told.size(), static_cast<std::size_t>(failures));
      EXPECT_EQ(told.back().name, query.name);
      EXPECT_EQ(told.back().error, asio::error::no_memory);
      EXPECT_EQ(told.back().thread, std::this_thread::get_id());
    }
  }
  EXPECT_GE(failures, 2) << "for the name, and for the thread";
  found.Wait();
  const Told first_found = answers.All().at(static_cast<std::size_t>(failures));
  EXPECT_EQ(first_found.name, LongName(failures).name) << "nothing is left of the others";
}

TEST(HostLookupsMemory, AThreadThatRunsTakesTheNameInItsTurn) {
  Answers answers;
  Latch begun(1);
  Latch release(1);
  Latch first_found(1);
  Latch both_found(2);
  HostLookups lookups(
      [&](const HostQuery& query, const HostAnswer& answer) {
        answers.Add(query, answer);
        if (!answer.error) {
          both_found.CountDown();
          first_found.CountDown();
        }
      },
      [&](const HostQuery& query) {
        if (query.name == "first") {
          begun.CountDown();
          release.Wait();
        }
        return HostAnswer{{}, {asio::ip::address_v4::loopback()}};
      });
  lookups.Begin({"first", false});
  begun.Wait();
  int failures = 0;
  bool failed = false;
  bool waits = false;
  do {
    const HostQuery query = LongName(failures);
    AllocationFailure failure(failures);
    lookups.Begin(query);
    failed = failure.Happened();
    waits = failed && answers.All().size() == static_cast<std::size_t>(failures);
    ++failures;
  } while (failed && !waits);
  release.CountDown();
  first_found.Wait();
  ASSERT_TRUE(waits);
  both_found.Wait();
  const std::vector<Told> told = answers.All();
  ASSERT_EQ(told.size(), static_cast<std::size_t>(failures) + 1);
  EXPECT_EQ(told[told.size() - 2].name, "first");
  EXPECT_EQ(told.back().name, LongName(failures - 1).name);
  EXPECT_EQ(told.back().thread, told[told.size() - 2].thread);
}

}  // namespace
}  // namespace slp
