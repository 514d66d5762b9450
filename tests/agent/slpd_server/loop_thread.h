// An event loop on a thread of its own, so that a test can be a blocking client of what runs on it.
#pragma once

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <future>
#include <thread>
#include <type_traits>
#include <utility>

namespace slp {

class LoopThread {
 public:
  LoopThread() : work_(asio::make_work_guard(io_)), thread_([this] { io_.run(); }) {}
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;
  ~LoopThread() {
    io_.stop();
    thread_.join();
  }

  asio::io_context& io() { return io_; }

  /// What the function returns, called on the loop's thread.
  template <typename Function>
  auto Do(Function function) {
    std::packaged_task<std::invoke_result_t<Function>()> task(std::move(function));
    auto result = task.get_future();
    asio::post(io_, [&task] { task(); });
    return result.get();
  }

 private:
  asio::io_context io_;
  asio::executor_work_guard<asio::io_context::executor_type> work_;
  std::thread thread_;
};

}  // namespace slp
