// A line on the terminal that shows that the tool is still waiting. Starts a thread of its own for as long as
// it lives; draws nothing where standard error is no terminal.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace kelsd_tool {

class Progress {
 public:
  /// `what`: e.g. "Searching service:zdrest.tamro:http".
  explicit Progress(const std::string& what);
  /// Wipes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void Draw();

  std::string what_;
  std::mutex mutex_;
  std::condition_variable finished_signal_;
  bool finished_ = false;
  std::thread drawer_;
};

}  // namespace kelsd_tool
