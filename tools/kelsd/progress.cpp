#include "progress.h"

#include <chrono>
#include <iostream>

#include "printable_text.h"
#include "terminal.h"

namespace kelsd_tool {
namespace {

// A search that ends sooner shows nothing at all.
constexpr std::chrono::milliseconds kFirst{400};
constexpr std::chrono::milliseconds kStep{200};

}  // namespace

Progress::Progress(const std::string& what) : what_(PrintableText(what)) {
  if (ErrorIsTerminal()) {
    drawer_ = std::thread([this] { Draw(); });
  }
}

Progress::~Progress() {
  {
    const std::lock_guard lock(mutex_);
    finished_ = true;
  }
  finished_signal_.notify_one();
  if (drawer_.joinable()) {
    drawer_.join();
  }
}

void Progress::Draw() {
  static constexpr const char* kMarks[] = {"|", "/", "-", "\\"};
  const auto start = std::chrono::steady_clock::now();
  std::unique_lock lock(mutex_);
  if (finished_signal_.wait_for(lock, kFirst, [this] { return finished_; })) {
    return;
  }
  std::size_t turn = 0;
  do {
    const auto waited =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start).count();
    std::cerr << '\r' << kMarks[turn++ % std::size(kMarks)] << ' ' << what_ << " ... " << waited << " s "
              << std::flush;
  } while (!finished_signal_.wait_for(lock, kStep, [this] { return finished_; }));
  std::cerr << '\r' << std::string(what_.size() + 20, ' ') << '\r' << std::flush;
}

}  // namespace kelsd_tool
