#include "slpd/server/directory_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "agent/slpd_server/loop_thread.h"
#include "support/latch.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Seconds kNever{100'000};

class DirectoryNamesTest : public testing::Test {
 protected:
  ~DirectoryNamesTest() override {
    loop_.Do([this] { names_.reset(); });
  }

  void Apply(const std::vector<std::string>& names) {
    loop_.Do([&] {
      if (!names_) {
        names_ = std::make_unique<DirectoryNames>(loop_.io(), log_, [this] { changed_.CountDown(); });
      }
      names_->Apply(names, kNever);
    });
  }

  std::vector<std::string> Addresses() {
    return loop_.Do([this] { return names_->Addresses(); });
  }

  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  kelsd::support::Latch changed_{1};
  LoopThread loop_;
  std::unique_ptr<DirectoryNames> names_;
};

TEST_F(DirectoryNamesTest, AreLookedUpAndToldOfWhenNotFound) {
  Apply({"no-such-host.invalid", "localhost"});
  changed_.Wait();
  EXPECT_THAT(Addresses(), ElementsAre("127.0.0.1"));
  EXPECT_THAT(loop_.Do([this] { return log_text_.str(); }),
              HasSubstr(" problem net.slp.DAAddresses names no-such-host.invalid, which is not found: "));
}

TEST_F(DirectoryNamesTest, WhatIsNoLongerNamedIsForgotten) {
  Apply({"localhost"});
  changed_.Wait();
  Apply({});
  EXPECT_THAT(Addresses(), IsEmpty());
}

TEST_F(DirectoryNamesTest, MayGoWhileTheyAreLookedUp) {
  loop_.Do([this] {
    DirectoryNames names(loop_.io(), log_, [this] { changed_.CountDown(); });
    names.Apply({"no-such-host.invalid", "localhost"}, kNever);
    names.Apply({"localhost"}, kNever);
  });
  // What was under way comes back to nobody; later names are served as ever.
  Apply({"localhost"});
  changed_.Wait();
  EXPECT_THAT(loop_.Do([this] { return log_text_.str(); }), IsEmpty());
}

}  // namespace
}  // namespace slp
